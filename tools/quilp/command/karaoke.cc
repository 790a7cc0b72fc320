#include <json/value.h>

#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "command/commands.h"
#include "command/options.h"
#include "command/time_limit.h"
#include "libquilp.h"
#include "lookup/requests.h"
#include "name/format.h"
#include "name/song.h"
#include "output/exit_status.h"
#include "output/json_output.h"
#include "output/message.h"
#include "output/table.h"
#include "output/utf8.h"
#include "platform/why_nothing.h"

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

Json::Value jsonOf(const KTV_ExtraData_t& info) {
  Json::Value song;
  song["title"] = jsonText(info.title);
  song["language"] = jsonText(languageName(info.language));
  song["vocalTrack"] = jsonText(trackName(info.audioTrack));
  song["gain"] = info.gain != -1 ? Json::Value(info.gain) : Json::Value();
  song["artists"] = Json::Value(Json::arrayValue);
  for (const ArtistData_t& artist : info.artists) {
    Json::Value entry;
    entry["name"] = jsonText(artist.name);
    entry["gender"] = jsonText(genderName(artist.gender));
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

void printLines(const KTV_ExtraData_t& info) {
  printLine("    title", info.title);
  printLine("    language", languageName(info.language));
  printLine("    vocal track", trackName(info.audioTrack));
  printLine("    gain", info.gain != -1 ? std::to_string(info.gain) : "");
  for (const ArtistData_t& artist : info.artists) {
    std::string value = artist.name;
    for (const std::string& detail : {genderName(artist.gender), countryName(artist.nationality)}) {
      value += detail.empty() ? "" : ", " + detail;
    }
    printLine("    artist", value);
  }
  for (const std::string& genre : info.genres) {
    printLine("    genre", genre);
  }
}

int describe(const std::vector<std::string>& files, Format format) {
  bool failed = false;
  Json::Value songs(Json::arrayValue);
  for (const std::string& argument : files) {
    const char* file = argument.c_str();
    KTV_ExtraData_t info;
    libquilp::Observer quiet;
    libquilp::Answer answer =
        run(libquilp::kSong, libquilp::Values::song(file), {&quiet, beginLookup()}, info);
    endLookup(answer);
    const bool read = answer.status == 0;
    failed = failed || !read;
    const std::string why = whyNothing(answer, libquilp::kSong.media);
    if (!why.empty()) {
      tell(std::string(argument).append(": ").append(why));
    }
    if (format == Format::kJson) {
      Json::Value song = read ? jsonOf(info) : Json::Value();
      song["file"] = jsonText(file);
      songs.append(song);
    } else {
      std::cout << lineText(file) << '\n';
      if (read) {
        printLines(info);
      }
    }
    if (statusAfterLookup(0) != 0) {
      break;
    }
  }
  const bool written =
      format == Format::kJson ? printJson(songs) : static_cast<bool>(std::cout.flush());
  return statusAfterLookup(written && !failed ? 0 : kNothingFound);
}

/// Prints the file name of a song, which reads as that song.
int printName(const libquilp::Song& song) {
  const auto name = libquilp::formatted(song);
  if (!name || name->find_first_of(std::string_view("/\0", 2)) != std::string::npos) {
    throw WrongUsage(
        "no file name reads as this song: --artist is one artist, --language a code such as"
        " en or yue, --track one of instrumental, vocal, guide, L, R, S, 0, 1; nothing has a \"/\"",
        "quilp karaoke");
  }
  std::cout << *name << '\n';
  return std::cout.flush() ? 0 : kNothingFound;
}

}  // namespace

void addKaraokeCommand(Command& program) {
  static List files;
  static Format format;
  static libquilp::Song named;
  Command& karaoke =
      program.add("karaoke", "Describe karaoke songs by their files' names, or as an add-on does");
  files.addTo(karaoke, "FILE", "Song files, which need not exist");
  addFormat(karaoke, format, {Format::kTable, Format::kJson});
  addTimeout(karaoke);
  karaoke.options.push_back(
      {0, "name", "TITLE", "Write a file name for the song of this title instead, of what follows",
       toText(named.title)});
  const auto add = [&karaoke](const char* option, const char* value, const char* description,
                              std::vector<std::string>& words) {
    karaoke.options.push_back({0, option, value, description,
                               [&words](const std::string& word) { words.push_back(word); }});
  };
  add("artist", "NAME", "An artist of it; again for each", named.artists);
  add("language", "LANG", "A language of it: en, zh, yue ...; again for each", named.languages);
  karaoke.options.push_back({0, "track", "TRACK",
                             "Its vocal track: instrumental, vocal, guide, L, R, S, 0 or 1",
                             toText(named.vocalTrack)});
  karaoke.run = [] {
    const bool isNamed = !(named == libquilp::Song());
    if (isNamed && (named.title.empty() || files.isGiven())) {
      throw WrongUsage("--artist, --language and --track go with --name, and no FILE does",
                       "quilp karaoke");
    }
    return isNamed ? printName(named) : describe(files.words(), format);
  };
}

}  // namespace quilp
