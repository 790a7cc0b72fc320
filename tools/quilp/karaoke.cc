#include <json/value.h>
#include <json/writer.h>

#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "libquilp.h"

namespace quilp {
namespace {

const char* const kGenders[] = {"", "male", "female", "group"};  // by code of g_GenderCode

/// The names that codes stand for; empty for a code that stands for nothing.
std::string languageName(int code) {
  for (const KaraokeLanguageEntry* row = g_LanguageCode; row->code > 0; ++row) {
    if (row->code == code) {
      return row->name;
    }
  }
  return {};
}

std::string trackName(int code) {
  for (const KaraokeCodeEntry* row = g_VocalTrackCode; row->length != 0; ++row) {
    if (row->code == code) {
      return std::string(row->marker + 1,
                         static_cast<std::size_t>(row->length - 2));  // no brackets
    }
  }
  return {};
}

std::string genderName(int code) { return code >= 0 && code <= 3 ? kGenders[code] : ""; }

std::string countryName(int code) {
  for (const CountryEntry* row = g_CountryCode; row->alpha2 != nullptr; ++row) {
    if (row->numeric == code) {
      return row->name;
    }
  }
  return code > 0 ? std::to_string(code) : "";
}

/// The length of the UTF-8 character that `text` starts with; 0 when it starts with none.
std::size_t characterLength(std::string_view text) {
  const auto byte = [text](std::size_t i) -> unsigned {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
  };
  const unsigned lead = byte(0);
  if (lead < 0x80) {
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4) {
    return 0;
  }
  // Overlong forms, surrogates and what lies beyond the last code are told by the second byte.
  const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte(1) < lowest || byte(1) > highest) {
    return 0;
  }
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  for (std::size_t i = 2; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) {
      return 0;
    }
  }
  return size;
}

/// JSON is UTF-8, file names are bytes: one that is no part of a character becomes U+FFFD.
std::string jsonText(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const std::size_t size = characterLength(bytes);
    text += size > 0 ? bytes.substr(0, size) : "\xEF\xBF\xBD";
    bytes.remove_prefix(size > 0 ? size : 1);
  }
  return text;
}

Json::Value jsonOf(const std::string& text) {
  return text.empty() ? Json::Value() : Json::Value(jsonText(text));
}

Json::Value jsonOf(const KTV_ExtraData_t& info) {
  Json::Value song;
  song["title"] = jsonOf(info.title);
  song["language"] = jsonOf(languageName(info.language));
  song["vocalTrack"] = jsonOf(trackName(info.audioTrack));
  song["gain"] = info.gain != -1 ? Json::Value(info.gain) : Json::Value();
  song["artists"] = Json::Value(Json::arrayValue);
  for (const ArtistData_t& artist : info.artists) {
    Json::Value entry;
    entry["name"] = jsonText(artist.name);
    entry["gender"] = jsonOf(genderName(artist.gender));
    entry["nationality"] =
        artist.nationality != 0 ? Json::Value(artist.nationality) : Json::Value();
    song["artists"].append(entry);
  }
  song["genres"] = Json::Value(Json::arrayValue);
  for (const std::string& genre : info.genres) {
    song["genres"].append(jsonText(genre));
  }
  return song;
}

/// One line, whatever control characters a name holds.
std::string lineText(std::string text) {
  for (char& c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) {
      c = '?';
    }
  }
  return text;
}

void printLine(const char* label, const std::string& value) {
  if (!value.empty()) {
    std::cout << "    " << label << lineText(value) << '\n';
  }
}

void printLines(const KTV_ExtraData_t& info) {
  printLine("title        ", info.title);
  printLine("language     ", languageName(info.language));
  printLine("vocal track  ", trackName(info.audioTrack));
  printLine("gain         ", info.gain != -1 ? std::to_string(info.gain) : "");
  for (const ArtistData_t& artist : info.artists) {
    std::string value = artist.name;
    for (const std::string& detail : {genderName(artist.gender), countryName(artist.nationality)}) {
      value += detail.empty() ? "" : ", " + detail;
    }
    printLine("artist       ", value);
  }
  for (const std::string& genre : info.genres) {
    printLine("genre        ", genre);
  }
}

int describe(const std::vector<std::string>& files, bool asJson) {
  bool failed = false;
  Json::Value songs(Json::arrayValue);
  for (const std::string& argument : files) {
    const char* file = argument.c_str();
    KTV_ExtraData_t info;
    const bool read = velGetKTVInfo(file, &info) == 0;
    if (!read) {
      std::cerr << "quilp: the add-on failed for " << lineText(file) << '\n';
      failed = true;
    }
    if (asJson) {
      Json::Value song = read ? jsonOf(info) : Json::Value();
      song["file"] = jsonText(file);
      songs.append(song);
    } else {
      std::cout << lineText(file) << '\n';
      if (read) {
        printLines(info);
      }
    }
  }
  if (asJson) {
    Json::StreamWriterBuilder writer;
    writer["emitUTF8"] = true;
    writer["indentation"] = "  ";
    std::cout << Json::writeString(writer, songs) << '\n';
  }
  return std::cout.flush() && !failed ? 0 : kNothingFound;
}

}  // namespace

void addKaraokeCommand(CLI::App& app, int& status) {
  static std::vector<std::string> files;
  static bool asJson = false;
  CLI::App* karaoke = app.add_subcommand(
      "karaoke", "Describe karaoke songs by their files' names, or as an add-on does");
  karaoke->add_option("FILE", files, "Song files, which need not exist")->required();
  karaoke->add_flag(
      "--json", asJson,
      "Print a JSON array: an object for each file, null for what is not known. Bytes "
      "of a name that are not UTF-8 become U+FFFD");
  karaoke->callback([&status] { status = describe(files, asJson); });
}

}  // namespace quilp
