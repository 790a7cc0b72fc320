#include "scan/names_of_files.h"

#include <array>
#include <filesystem>
#include <stdexcept>
#include <utility>
#include <vector>

#include "name/format.h"
#include "text/utf8.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = 255;  // of one name on most file systems
constexpr char kSeparators[] = " -.";

/// The code point of a UTF-8 character of two or three bytes; 0 for another.
unsigned codePoint(std::string_view character) {
  const auto bits = [character](std::size_t i, unsigned mask) {
    return static_cast<unsigned char>(character[i]) & mask;
  };
  return character.size() == 2   ? bits(0, 0x1F) << 6 | bits(1, 0x3F)
         : character.size() == 3 ? bits(0, 0x0F) << 12 | bits(1, 0x3F) << 6 | bits(2, 0x3F)
                                 : 0;
}

/// Marks that turn the direction of text, or cannot be seen.
bool isInvisible(std::string_view character) {
  const unsigned code = codePoint(character);
  const auto isFrom = [code](unsigned first, unsigned last) {
    return code >= first && code <= last;
  };
  return isFrom(0x80, 0x9F) || isFrom(0x200B, 0x200F) || isFrom(0x202A, 0x202E) ||
         isFrom(0x2066, 0x2069) || code == 0xFEFF;
}

std::string twoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string numbersOf(const std::vector<int>& numbers) {
  if (numbers.empty()) {
    return {};
  }
  const std::string first = twoDigits(numbers.front());
  return numbers.size() == 1 ? first : first + "-" + twoDigits(numbers.back());
}

/// A name that reads as the song, without its extension.
std::string nameOfSong(libquilp::Song song) {
  song.title = fileNamePart(song.title);
  for (std::string& artist : song.artists) {
    artist = fileNamePart(artist);
  }
  song.style = fileNamePart(song.style);
  const std::string name = libquilp::formatted(song).value_or("");
  return song.container.empty() || name.empty()
             ? name
             : name.substr(0, name.size() - song.container.size() - 1);
}

std::string valueOf(const std::string& field, const MediaItem& item, const ScanRow& row) {
  if (field == "song") {
    return row.kind == MediaKind::kSong ? nameOfSong(item.song) : "";
  }
  const int year = row.matchYear != 0 ? row.matchYear : row.year;
  const std::vector<std::pair<std::string, std::string>> values = {
      {"title", row.match.empty() ? row.title : row.match},
      {"year", year != 0 ? std::to_string(year) : ""},
      {"season",
       row.kind == MediaKind::kEpisode && row.seasons.empty() ? "01" : numbersOf(row.seasons)},
      {"episode", numbersOf(row.episodes)},
      {"episode_title", row.matchEpisode.empty() ? row.episodeTitle : row.matchEpisode},
      {"part", item.name.part},
      {"resolution", item.name.resolution},
      {"source", item.name.source},
      {"edition", item.name.edition},
      {"group", item.name.group},
      {"id", row.id}};
  for (const auto& [name, value] : values) {
    if (name == field) {
      return fileNamePart(value);
    }
  }
  throw std::runtime_error("the pattern has an unknown field {" + field + "}");
}

/// Without " ()" and " []" that are left where a field had no value, and separators at the ends.
std::string tidied(std::string text) {
  for (const char* empty : {" ()", " []", " {}", "()", "[]"}) {
    for (std::size_t at; (at = text.find(empty)) != std::string::npos;) {
      text.erase(at, std::string_view(empty).size());
    }
  }
  // Programs take a name that begins with "-" for an option.
  const std::size_t start = text.find_first_not_of(kSeparators);
  const std::size_t end = text.find_last_not_of(kSeparators);
  return start == std::string::npos ? "" : text.substr(start, end - start + 1);
}

std::string cut(const std::string& name, std::size_t most) {
  std::string kept;
  libquilp::forEachCharacter(name, [&](std::string_view character) {
    if (kept.size() + character.size() <= most) {
      kept += character;
    } else {
      most = 0;
    }
  });
  return kept;
}

}  // namespace

std::string fileNamePart(std::string_view text) {
  std::string part;
  libquilp::forEachCharacter(text, [&part](std::string_view character) {
    const auto first = static_cast<unsigned char>(character.empty() ? '?' : character.front());
    if (first < 0x20 || first == 0x7F || isInvisible(character)) {
      return;
    }
    if (character == ":") {
      part += part.empty() || part.back() == ' ' ? "-" : " -";
    } else if (character.empty() ||
               std::string_view("/\\*?\"<>|").find(character.front()) != std::string_view::npos) {
      part += character == "/" || character == "\\" || character == "|" ? "-" : "";
    } else {
      part += character;
    }
  });
  const std::size_t start = part.find_first_not_of(" .");
  const std::size_t end = part.find_last_not_of(" .");
  return start == std::string::npos ? "" : part.substr(start, end - start + 1);
}

std::string nameByPattern(const std::string& pattern, const MediaItem& item, const ScanRow& row,
                          const std::string& file) {
  std::string text;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const std::size_t end = pattern[i] == '{' ? pattern.find('}', i) : std::string::npos;
    if (end == std::string::npos) {
      text += pattern[i];
      continue;
    }
    text += valueOf(pattern.substr(i + 1, end - i - 1), item, row);
    i = end;
  }
  const fs::path old(file);
  const std::string extension = item.isFolder ? "" : old.extension().native();
  fs::path to = old.parent_path();
  const fs::path relative(text);
  for (auto part = relative.begin(); part != relative.end(); ++part) {
    const bool isLast = std::next(part) == relative.end();
    const std::string name =
        cut(tidied(fileNamePart(part->native())), kMostBytes - (isLast ? extension.size() : 0));
    if (name.empty()) {
      throw std::runtime_error("the pattern leaves no name for " + file);
    }
    to /= isLast ? name + extension : name;
  }
  return to.native();
}

}  // namespace quilp
