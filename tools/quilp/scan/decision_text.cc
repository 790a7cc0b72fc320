#include <array>
#include <iostream>
#include <string_view>
#include <utility>

#include "name/fields.h"
#include "output/json_output.h"
#include "output/table.h"
#include "output/utf8.h"
#include "scan/decision.h"

namespace quilp {
namespace {

using libquilp::KeyValues;
using libquilp::NameField;
using libquilp::NameSpan;

/// The key of a field, where its bytes are of use to understand a match.
std::string_view keyOf(NameField field) {
  static constexpr std::array<std::pair<NameField, std::string_view>, 9> kKeys = {
      {{NameField::kTitle, "title"},
       {NameField::kAlternativeTitle, "alternative_title"},
       {NameField::kYear, "year"},
       {NameField::kSeason, "season"},
       {NameField::kEpisode, "episode"},
       {NameField::kAbsoluteEpisode, "absolute_episode"},
       {NameField::kAirDate, "air_date"},
       {NameField::kEpisodeTitle, "episode_title"},
       {NameField::kIdentifier, "identifiers"}}};
  for (const auto& [known, key] : kKeys) {
    if (known == field) {
      return key;
    }
  }
  return {};
}

std::vector<KeyValues> readOf(const MediaItem& item) {
  return item.kind == MediaKind::kSong ? fieldsOf(item.song) : fieldsOf(item.name);
}

std::string bytesOf(const MediaItem& item, const NameSpan& span) {
  return item.path.substr(span.begin, span.end - span.begin);
}

bool isInFolder(const MediaItem& item, const NameSpan& span) {
  return item.path.find('/', span.end) != std::string::npos;
}

template <class Visit>
void forEachSpan(const MediaItem& item, std::string_view key, Visit visit) {
  for (const NameSpan& span : item.name.spans) {
    if (keyOf(span.field) == key) {
      visit(span);
    }
  }
}

std::string titleAndYear(const std::string& title, int year) {
  return year != 0 ? title + " (" + std::to_string(year) + ')' : title;
}

const char* stateOf(const ScanRow& row) {
  return row.sure ? "sure" : row.unknown() ? "unknown" : "unsure";
}

void printRead(const MediaItem& item) {
  for (const KeyValues& field : readOf(item)) {
    if (field.key == "kind") {
      continue;  // what the scan takes it for is told
    }
    std::string label(field.key);
    std::replace(label.begin(), label.end(), '_', ' ');
    std::string line;
    for (const std::string& value : field.values) {
      line += (line.empty() ? "" : ", ") + value;
    }
    printLine(label, line);
    forEachSpan(item, field.key, [&item](const NameSpan& span) {
      printLine("", "  read from \"" + bytesOf(item, span) + "\" at byte " +
                        std::to_string(span.begin) +
                        (isInFolder(item, span) ? ", in a folder's name" : ""));
    });
  }
}

void printCandidate(const Candidate& candidate) {
  printLine("candidate", titleAndYear(candidate.title, candidate.year) +
                             (candidate.id.empty() ? "" : ", " + candidate.id) + ": " +
                             std::to_string(candidate.confidence));
  if (!candidate.byOwnTitle) {
    printLine("", "  by its other title \"" + candidate.comparedTitle + '"');
  }
  for (const ScorePart& part : candidate.parts) {
    printLine("", (part.points < 0 ? "  " : "  +") + std::to_string(part.points) + ' ' + part.why);
  }
}

bool printAsText(const Decision& decision) {
  const ScanRow& row = decision.row;
  printLine("file", row.file);
  printLine("kind", nameOf(row.kind));
  printRead(decision.item);
  for (const std::string& id : row.setAside) {
    printLine("set aside", id);
  }
  for (const Candidate& candidate : row.candidates) {
    printCandidate(candidate);
  }
  printLine("match",
            titleAndYear(row.match, row.matchYear) + (row.id.empty() ? "" : ", " + row.id));
  printLine("episode", row.matchEpisode);
  printLine("decision", std::string(stateOf(row)) + ": confidence " +
                            std::to_string(row.confidence) + ", sure from " +
                            std::to_string(decision.sure) + " on");
  printLine("reason", row.reason);
  return static_cast<bool>(std::cout.flush());
}

Json::Value jsonOfRead(const MediaItem& item) {
  Json::Value read(Json::arrayValue);
  for (const KeyValues& field : readOf(item)) {
    Json::Value one;
    one["field"] = std::string(field.key);
    for (const std::string& value : field.values) {
      one["values"].append(jsonText(value));
    }
    one["from"] = Json::Value(Json::arrayValue);
    forEachSpan(item, field.key, [&](const NameSpan& span) {
      Json::Value from;
      from["begin"] = static_cast<Json::UInt64>(span.begin);
      from["end"] = static_cast<Json::UInt64>(span.end);
      from["text"] = jsonText(bytesOf(item, span));
      from["in_folder"] = isInFolder(item, span);
      one["from"].append(from);
    });
    read.append(one);
  }
  return read;
}

/// What a scan prints, and more.
bool printAsJson(const Decision& decision) {
  Json::Value value = jsonOf(decision.row);
  value["read"] = jsonOfRead(decision.item);
  value["sure_from"] = decision.sure;
  value["set_aside"] = Json::Value(Json::arrayValue);
  for (const std::string& id : decision.row.setAside) {
    value["set_aside"].append(jsonText(id));
  }
  Json::ArrayIndex i = 0;
  for (const Candidate& candidate : decision.row.candidates) {
    Json::Value& one = value["candidates"][i++];
    one["compared_title"] = jsonText(candidate.comparedTitle);
    for (const ScorePart& part : candidate.parts) {
      Json::Value points;
      points["points"] = part.points;
      points["why"] = jsonText(part.why);
      one["parts"].append(points);
    }
  }
  return printJson(value);
}

}  // namespace

bool print(const Decision& decision, Format format) {
  return format == Format::kJson ? printAsJson(decision) : printAsText(decision);
}

}  // namespace quilp
