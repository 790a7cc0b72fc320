#include "name/path.h"

#include <string>

#include "name/component.h"
#include "name/token.h"

namespace libquilp {
namespace {

std::string lowered(std::string_view text) {
  std::string result;
  for (const char c : text) {
    result += lower(c);
  }
  return result;
}

constexpr std::string_view kGeneric[] = {
    "movies",        "movie",    "films",    "film",     "tv",
    "series",        "shows",    "tv shows", "tvshows",  "anime",
    "video",         "videos",   "video_ts", "bdmv",     "stream",
    "downloads",     "download", "media",    "complete", "completed",
    "sample",        "samples",  "subs",     "extras",   "cd1",
    "cd2",           "cd3",      "disc 1",   "disc 2",   "disc1",
    "disc2",         "disk1",    "disk2",    "dvd1",     "dvd2",
    "mnt",           "home",     "data",     "torrents", "animation",
    "documentaries", "filme",    "serien",   "temp",     "tmp",
    "storage",       "share",    "nas"};

/// Titles with a slash in them: the words around it.
constexpr std::string_view kSlashTitles[][2] = {
    {"fate", "zero"},  {"fate", "stay"},       {"fate", "grand"},  {"fate", "apocrypha"},
    {"fate", "extra"}, {"fate", "kaleid"},     {"fate", "hollow"}, {"fate", "strange"},
    {"face", "off"},   {"nip", "tuck"},        {"frost", "nixon"}, {"v", "h"},
    {"h", "s"},        {"victor", "victoria"}, {"hack", ""},
};

bool isSlashTitle(std::string_view path, std::size_t slash) {
  for (const auto& words : kSlashTitles) {
    const std::string_view before = words[0];
    const std::string_view after = words[1];
    if (slash >= before.size() &&
        lowered(path.substr(slash - before.size(), before.size())) == before &&
        (slash == before.size() || !isLetter(path[slash - before.size() - 1])) &&
        lowered(path.substr(slash + 1, after.size())) == after) {
      return true;
    }
  }
  return false;
}

bool parts(std::string_view path, std::size_t i, int depth) {
  const char c = path[i];
  if (c != '/' && c != '\\') {
    return false;
  }
  if (depth > 0 && c == '/') {
    return false;
  }
  const bool blankBefore = i > 0 && path[i - 1] == ' ';
  const bool blankAfter = i + 1 < path.size() && path[i + 1] == ' ';
  if (c == '/' && blankBefore && blankAfter) {
    return false;
  }
  if (c == '/' && isSlashTitle(path, i)) {
    return false;
  }
  const bool fraction = c == '/' && i > 1 && i + 1 < path.size() && isDigit(path[i - 1]) &&
                        isDigit(path[i + 1]) && path[i - 2] == ' ';
  if (!fraction) {
    return true;
  }
  // "Season 2/201.mkv": a file in a folder whose name ends with a number
  constexpr std::size_t kLongestFile = 64;
  return path.size() - i <= kLongestFile &&
         isSeasonFolder(path.substr(0, i).substr(path.rfind('/', i - 1) + 1));
}

bool hasExtension(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  return dot != std::string_view::npos && path.size() - dot <= 5 && path.size() - dot >= 3 &&
         path.find(' ', dot) == std::string_view::npos;
}

}  // namespace

PathParts partsOf(std::string_view path) {
  PathParts result;
  result.begin = path.data();
  while (!path.empty() && (path.back() == '/' || path.back() == '\\')) {
    path.remove_suffix(1);
  }
  if (path.find('/') == std::string_view::npos && path.find('\\') == std::string_view::npos) {
    result.part[result.count++] = path;
    return result;
  }
  // "Fate/Zero" alone is a title
  const std::size_t first = path.find('/');
  const bool single = first != std::string_view::npos && first != 0 &&
                      path.find('/', first + 1) == std::string_view::npos &&
                      path.find('\\') == std::string_view::npos && !hasExtension(path) &&
                      !isSeasonFolder(path.substr(0, first)) && first < 24 &&
                      path.substr(0, first).find_first_of("0123456789[(") == std::string_view::npos;
  const bool listed = path.find(" / ") != std::string_view::npos;
  std::size_t end = path.size();
  int depth = 0;
  std::string_view found[PathParts::kMost];
  std::size_t i = path.size();
  while (i > 0 && result.count < PathParts::kMost) {
    --i;
    if (path[i] == ']' || path[i] == ')') {
      ++depth;
    } else if ((path[i] == '[' || path[i] == '(') && depth > 0) {
      --depth;
    }
    if (path[i] == '\\') {
      depth = 0;
    }
    if (!single && parts(path, i, depth) && !(listed && path[i] == '/')) {
      if (i + 1 < end) {
        found[result.count++] = path.substr(i + 1, end - i - 1);
      }
      end = i;
    }
  }
  if (i == 0 && end > 0 && result.count < PathParts::kMost) {
    found[result.count++] = path.substr(0, end);
  }
  if (result.count == 0) {
    result.part[result.count++] = path;
    return result;
  }
  for (std::size_t k = 0; k < result.count; ++k) {
    result.part[k] = found[result.count - 1 - k];
  }
  return result;
}

bool isSeasonFolder(std::string_view folder) {
  if (folder.size() > 40) {
    return false;
  }
  if (lowered(folder) == "specials") {
    return true;
  }
  Surroundings surroundings;
  surroundings.isFolder = true;
  const Name name = readComponent(folder, surroundings);
  return !name.seasons.empty() && name.episodes.empty() && name.title.empty();
}

bool isGenericFolder(std::string_view folder) {
  if (folder.size() > 16 || folder.empty()) {
    return folder.empty();
  }
  const std::string word = lowered(folder);
  for (const std::string_view generic : kGeneric) {
    if (word == generic) {
      return true;
    }
  }
  return folder.back() == ':';
}

bool isWeakTitle(const Name& name) {
  const std::string& title = name.title;
  if (title.empty()) {
    return true;
  }
  bool letters = false;
  for (const char c : title) {
    letters = letters || !isDigit(c);
  }
  if (!letters) {
    return name.kind == NameKind::kEpisode || title.size() >= 5;
  }
  return title.substr(0, 4) == "VTS " || title == "VIDEO TS" || title == "index" ||
         (name.year == 0 && (title == "movie" || title == "video" || title == "film"));
}

}  // namespace libquilp
