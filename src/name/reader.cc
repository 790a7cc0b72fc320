#include "name/reader.h"

#include <algorithm>

namespace libquilp {
namespace {

constexpr std::string_view kContainers[] = {
    "mkv", "mp4", "avi", "m4v", "ts",  "m2ts", "mts",  "wmv", "mov", "mpg", "mpeg", "flv", "webm",
    "iso", "img", "vob", "ogm", "ogv", "divx", "rmvb", "rm",  "3gp", "asf", "m2v",  "f4v", "strm"};
constexpr std::size_t kLongestExtension = 8;  // with its dot

/// Files beside a video, whose names are read as its name.
constexpr std::string_view kCompanions[] = {"srt", "sub",     "ass", "ssa", "idx",
                                            "nfo", "torrent", "txt", "jpg", "rar",
                                            "zip", "sfv",     "nzb", "vtt", "mka"};

template <std::size_t N>
bool contains(const std::string_view (&list)[N], std::string_view word) {
  return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

std::string_view withoutExtension(std::string_view text, bool isFolder) {
  const std::string_view end = text.substr(text.size() - std::min(text.size(), kLongestExtension));
  const std::size_t dot = end.rfind('.');
  if (isFolder || dot == std::string_view::npos || end.size() - dot < 3) {
    return text;
  }
  std::string extension;
  for (const char c : end.substr(dot + 1)) {
    extension += lower(c);
  }
  return contains(kContainers, extension) || contains(kCompanions, extension)
             ? text.substr(0, text.size() - (end.size() - dot))
             : text;
}

constexpr std::size_t kUsualSpans = 12;

}  // namespace

Reader::Reader(std::string_view text, const Surroundings& surroundings, Name& name)
    : name_(name),
      surroundings_(surroundings),
      text_(withoutExtension(text, surroundings.isFolder)),
      tokens_(text_) {
  name_.spans.reserve(kUsualSpans);
  if (text_.size() != text.size()) {
    std::string extension;
    for (const char c : text.substr(text_.size() + 1)) {
      extension += lower(c);
    }
    if (contains(kContainers, extension)) {
      name_.container = extension;
      addSpan(NameField::kContainer, text_.size() + 1, text.size());
    }
  }
}

namespace {

/// Letters at random, which hide what a release is: a long word of digits and letters.
bool isObfuscated(std::string_view word) {
  std::size_t changes = 0;
  bool hex = true;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (!isDigit(word[i]) && !isLetter(word[i])) {
      return false;
    }
    hex = hex && (isDigit(word[i]) || lower(word[i]) <= 'f');
    changes += i > 0 && isDigit(word[i]) != isDigit(word[i - 1]) ? 1 : 0;
  }
  return (hex && word.size() >= 16) || (word.size() >= 10 && changes >= 3) ||
         (word.size() >= 20 && changes > 0);
}

}  // namespace

void Reader::read() {
  if (tokens_.count == 0 || (tokens_.count == 1 && isObfuscated(tokens_.text(0)))) {
    return;
  }
  matchTags();
  splitGlued();
  takeIdentifiers();
  takeSites();
  takeChecksum();
  findDate();
  findMarkers();
  findShortDate();
  findStart();
  undoLeadGroup();
  if (marker_ == kNone) {
    skipBroadcaster();
  }
  readFilmNumber();
  skipScenePrefix();
  readLeadCount();
  findYear();
  if (name_.episodes.empty() && name_.airDate.empty()) {
    if (!findLeadNumbers()) {
      findBareNumber();
    }
  }
  readTitle();
  readLatinTitle();
  readEpisodeTitle();
  takeEdition();
  takeTags(titleEnd_, tokens_.count);
  findGroup();
  findKind();
}

void Reader::findKind() {
  if (!name_.seasons.empty() || !name_.episodes.empty() || !name_.absoluteEpisodes.empty() ||
      !name_.airDate.empty() || isSeries_ || std::string_view(name_.extra) == "special") {
    name_.kind = NameKind::kEpisode;
  } else if (surroundings_.hint != NameKind::kUnknown) {
    name_.kind = surroundings_.hint;
  } else if (!name_.title.empty()) {
    name_.kind = NameKind::kMovie;
  }
}

std::size_t Reader::bracketEnd(std::size_t i) const {
  const std::uint32_t end = tokens_.bracket[outerBracket(i)].end;
  while (i < tokens_.count && tokens_.token[i].begin < end) {
    ++i;
  }
  return i;
}

bool Reader::alone(std::size_t i) const {
  const std::uint8_t bracket = tokens_.token[i].bracket;
  return bracket != 0 && (i == 0 || tokens_.token[i - 1].bracket != bracket) &&
         (i + 1 == tokens_.count || tokens_.token[i + 1].bracket != bracket);
}

Name readComponent(std::string_view text, const Surroundings& surroundings) {
  Name name;
  Reader reader(text, surroundings, name);
  reader.read();
  std::sort(name.spans.begin(), name.spans.end(),
            [](const NameSpan& a, const NameSpan& b) { return a.begin < b.begin; });
  return name;
}

}  // namespace libquilp
