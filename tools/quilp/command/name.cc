#include "name/name.h"

#include <json/value.h>

#include <iostream>
#include <string>
#include <vector>

#include "command/commands.h"
#include "command/options.h"
#include "name/fields.h"
#include "name/song.h"
#include "output/exit_status.h"
#include "output/json_output.h"
#include "output/table.h"
#include "output/utf8.h"

namespace quilp {
namespace {

using libquilp::KeyValues;

enum class Kind { kAuto, kMovie, kEpisode, kSong };

Json::Value jsonOf(const KeyValues& field) {
  Json::Value values(field.form == KeyValues::Form::kPairs ? Json::objectValue : Json::arrayValue);
  if (field.form == KeyValues::Form::kPairs) {
    for (std::size_t i = 0; i + 1 < field.values.size(); i += 2) {
      values[field.values[i]] = jsonText(field.values[i + 1]);
    }
    return values;
  }
  for (const std::string& value : field.values) {
    values.append(field.form == KeyValues::Form::kNumber ? Json::Value(std::stoi(value))
                                                         : jsonText(value));
  }
  return field.form != KeyValues::Form::kTexts && values.size() == 1 ? values[0] : values;
}

/// The key as a heading, and the values on one line.
void printField(const KeyValues& field) {
  std::string label(field.key);
  for (char& c : label) {
    c = c == '_' ? ' ' : c;
  }
  std::string line;
  for (const std::string& value : field.values) {
    line += (line.empty() ? "" : ", ") + value;
  }
  printLine("    " + label, line);
}

void describe(const std::string& name, Kind kind, Format format) {
  std::vector<KeyValues> fields;
  std::vector<KeyValues> details;
  if (kind == Kind::kSong || (kind == Kind::kAuto && libquilp::isSong(name))) {
    fields = fieldsOf(libquilp::readSong(name));
  } else {
    const auto hint = kind == Kind::kMovie     ? libquilp::NameKind::kMovie
                      : kind == Kind::kEpisode ? libquilp::NameKind::kEpisode
                                               : libquilp::NameKind::kUnknown;
    const libquilp::Name read = libquilp::readName(name, hint);
    fields = fieldsOf(read);
    details = detailsOf(read);
  }
  if (format == Format::kJson) {
    Json::Value line;
    line["name"] = validUtf8(name);
    for (const KeyValues& field : fields) {
      line[std::string(field.key)] = jsonOf(field);
    }
    printJsonLine(line);
    return;
  }
  std::cout << lineText(name) << '\n';
  for (const std::vector<KeyValues>* group : {&fields, &details}) {
    for (const KeyValues& field : *group) {
      printField(field);
    }
  }
}

}  // namespace

void addNameCommand(Command& program) {
  static List names;
  static Kind kind = Kind::kAuto;
  static Format format;
  Command& command = program.add(
      "name", "Tell what the names of releases say: title, year, season, episode and more");
  names.addTo(command, "NAME", "File names or paths of films, episodes or karaoke songs");
  command.options.push_back(choice("kind", kind, "What the names are of (default: auto)",
                                   Choices<Kind>{{"auto", Kind::kAuto},
                                                 {"movie", Kind::kMovie},
                                                 {"episode", Kind::kEpisode},
                                                 {"song", Kind::kSong}}));
  addFormat(command, format, {Format::kTable, Format::kJson});
  command.run = [] {
    names.forEach([](const std::string& name) { describe(name, kind, format); });
    return std::cout.flush() ? 0 : kNothingFound;
  };
}

}  // namespace quilp
