#include "name/numbers.h"

#include <algorithm>

namespace libquilp {
namespace {

/// Reads bytes of a name, and never beyond its end.
class Bytes {
 public:
  Bytes(std::string_view name, std::size_t at) : name_(name), at_(at) {}

  std::size_t at() const { return at_; }
  char peek() const { return at_ < name_.size() ? lower(name_[at_]) : '\0'; }

  bool skip(char c) {
    if (peek() != c || c == '\0') {
      return false;
    }
    ++at_;
    return true;
  }

  /// One of the letters "e" and "ep", with what may stand before a number.
  bool skipEpisodeLetter() {
    if (!skip('e')) {
      return false;
    }
    if (skip('p')) {
      skip('.');
      skip(' ');
    }
    return isDigit(peek());
  }

  std::size_t skipSeparators(std::size_t most) {
    const std::size_t start = at_;
    while (at_ - start < most && at_ < name_.size() &&
           std::string_view(" ._-+&,~").find(name_[at_]) != std::string_view::npos) {
      ++at_;
    }
    return at_ - start;
  }

  bool number(std::size_t mostDigits, int& value) {
    const std::size_t start = at_;
    value = 0;
    while (at_ < name_.size() && isDigit(name_[at_])) {
      if (at_ - start == mostDigits) {
        at_ = start;
        return false;
      }
      value = value * 10 + (name_[at_++] - '0');
    }
    return at_ != start;
  }

  /// A version, or the letter of half an episode: 05v2, 01b.
  void skipVersion() {
    const std::size_t start = at_;
    if (skip('v') && isDigit(peek())) {
      ++at_;
    } else {
      at_ = start;
    }
    if (peek() >= 'a' && peek() <= 'd') {
      ++at_;
      if (!atEnd()) {
        --at_;
      }
    }
  }

  /// Whether no word goes on here.
  bool atEnd() const { return !isDigit(peek()) && !isLetter(peek()); }

 private:
  std::string_view name_;
  std::size_t at_;
};

constexpr int kLongestRange = 2000;
constexpr int kMostSeasons = 60;  // S97 alone is no season

/// x264 is no episode.
constexpr bool isCodec(int number) { return number >= 264 && number <= 266; }

/// A season and an episode, 1x06, of which only the episode counts.
bool readRepeatedCross(Bytes& bytes, int& episode) {
  Bytes next = bytes;
  int season = 0;
  if (!(next.number(4, season) && next.skip('x') && next.number(3, episode))) {
    return false;
  }
  bytes = next;
  return true;
}

/// Episodes after the first: E01E02, E01-E03, E01-03, E01 & E02; with `letter` 'x' 1x01x02.
void readMoreEpisodes(Bytes& bytes, char letter, NumberList& episodes) {
  for (;;) {
    bytes.skipVersion();
    Bytes next = bytes;
    const std::size_t before = next.at();
    next.skipSeparators(3);
    const bool tight = next.at() - before == 1;
    const bool parted = next.at() != before;
    Bytes dash = bytes;
    dash.skipSeparators(1);
    bool range = false;
    {
      Bytes look = bytes;
      look.skip(' ');
      range = look.peek() == '-' || look.peek() == '~';
    }
    int number = 0;
    Bytes lettered = next;
    const bool hasLetter =
        lettered.skipEpisodeLetter() || ((letter == 'x' || !parted) && lettered.skip('x'));
    if (hasLetter && lettered.number(5, number) && !(letter == 'x' && isCodec(number))) {
      next = lettered;
    } else if (range && letter == 'x' && readRepeatedCross(next, number)) {
      // "1x05-1x06": the season once more
    } else if (range && tight && parted && next.number(4, number) &&
               number > episodes.numbers.back() && number < episodes.numbers.back() + 200) {
      Bytes after = next;
      after.skipVersion();
      if (!after.atEnd()) {
        return;
      }
    } else {
      return;
    }
    Bytes after = next;
    after.skipVersion();
    if (!after.atEnd() && after.peek() != 'e' && after.peek() != 'x') {
      return;
    }
    if (range && number > episodes.numbers.back()) {
      addRange(episodes.numbers.back() + 1, number, episodes.numbers);
    } else {
      episodes.numbers.push_back(number);
    }
    bytes = next;
    episodes.end = bytes.at();
  }
}

bool readEpisodes(Bytes& bytes, std::size_t begin, std::size_t mostDigits, char letter,
                  NumberList& episodes) {
  int number = 0;
  if (!bytes.number(mostDigits, number)) {
    return false;
  }
  episodes.numbers.push_back(number);
  episodes.begin = begin;
  episodes.end = bytes.at();
  readMoreEpisodes(bytes, letter, episodes);
  return true;
}

/// "S01E02" again after a marker: the same season's further episodes.
void readRepeated(Bytes& bytes, Marker& marker) {
  for (;;) {
    Bytes next = bytes;
    int season = 0;
    if (next.skipSeparators(3) == 0 || !next.skip('s') || !next.number(4, season) ||
        season != marker.seasons.numbers.front() || !next.skipEpisodeLetter()) {
      return;
    }
    const bool range = Bytes(bytes).peek() == '-';
    int number = 0;
    if (!next.number(4, number)) {
      return;
    }
    next.skipVersion();
    if (!next.atEnd()) {
      return;
    }
    if (range && number > marker.episodes.numbers.back()) {
      addRange(marker.episodes.numbers.back() + 1, number, marker.episodes.numbers);
    } else {
      marker.episodes.numbers.push_back(number);
    }
    bytes = next;
    marker.episodes.end = bytes.at();
  }
}

/// Further seasons after "S01": S01-S03, S01-03, S1 + S2.
void readMoreSeasons(Bytes& bytes, NumberList& seasons) {
  for (;;) {
    Bytes next = bytes;
    next.skip(' ');
    const bool range = next.peek() == '-' || next.peek() == '~';
    next = bytes;
    next.skipSeparators(3);
    int number = 0;
    Bytes lettered = next;
    if (!(lettered.skip('s') && lettered.number(2, number) && lettered.atEnd())) {
      return;
    }
    if (range && number > seasons.numbers.back()) {
      addRange(seasons.numbers.back() + 1, number, seasons.numbers);
    } else {
      seasons.numbers.push_back(number);
    }
    bytes = lettered;
    seasons.end = bytes.at();
  }
}

/// SP02: a special, which is of season 0.
Marker specialMarkerAt(Bytes bytes, std::size_t at) {
  Marker marker;
  int number = 0;
  const std::size_t begin = bytes.at();
  if (!bytes.number(2, number)) {
    return {};
  }
  marker.seasons = {{0}, at, begin};
  marker.episodes = {{number}, begin, bytes.at()};
  bytes.skipVersion();
  marker.end = bytes.atEnd() ? bytes.at() : 0;
  return marker;
}

Marker seasonMarkerAt(std::string_view name, std::size_t at, char letter) {
  Marker marker;
  Bytes bytes(name, at);
  int season = 0;
  if (!bytes.skip(letter)) {
    return {};
  }
  const bool letterForZero = letter == 's' && bytes.skip('o');  // SO2E04
  if (letter == 's' && bytes.skip('p')) {
    return specialMarkerAt(bytes, at);
  }
  if (!bytes.number(4, season)) {
    return {};
  }
  marker.seasons = {{season}, at, bytes.at()};
  Bytes next = bytes;
  const std::size_t separators = next.skipSeparators(3);
  const std::size_t begin = next.at();
  Bytes episode = next;
  if ((episode.skipEpisodeLetter() || (separators == 0 && episode.skip('x') &&
                                       (isDigit(episode.peek()) || episode.skipEpisodeLetter()))) &&
      readEpisodes(episode, begin, 5, 'e', marker.episodes)) {
    readRepeated(episode, marker);
    episode.skipVersion();
    if (!episode.atEnd()) {
      return {};
    }
    marker.end = episode.at();
    return marker;
  }
  if (letter != 's' || letterForZero ||
      (season > kMostSeasons && !isYear(season) && season < 100)) {
    return {};
  }
  // S0615: both numbers in one
  if (bytes.at() - at == 5 && !isYear(season) && season % 100 > 0 && bytes.atEnd()) {
    marker.seasons = {{season / 100}, at, at + 3};
    marker.episodes = {{season % 100}, at + 3, at + 5};
    marker.end = at + 5;
    return marker;
  }
  Bytes disc = next;
  int number = 0;
  if (((disc.skip('d') && (isDigit(disc.peek()) || (disc.skip('v') && disc.skip('d')) ||
                           (disc.skip('i') && disc.skip('s') && disc.skip('c'))))) &&
      disc.number(2, number) && disc.atEnd() && separators < 2) {
    marker.disc = {{number}, begin, disc.at()};
    marker.end = disc.at();
    return marker;
  }
  Bytes versioned = bytes;
  int version = 0;
  if (versioned.skip('v') && versioned.number(1, version) && versioned.atEnd()) {  // S01v2
    bytes = versioned;
  }
  if (!bytes.atEnd() && bytes.peek() != 's') {
    return {};
  }
  // "S1-02" is an episode, "S01-04" are seasons: the second number is written as the first
  Bytes second = bytes;
  if (second.skip('-') && second.number(3, number) && second.atEnd()) {
    const bool asSeason = second.at() - bytes.at() - 1 == bytes.at() - at - 1;
    if (asSeason && number > season && number < 60) {
      addRange(season + 1, number, marker.seasons.numbers);
      marker.seasons.end = second.at();
    } else {
      marker.episodes = {{number}, bytes.at() + 1, second.at()};
    }
    marker.end = second.at();
    return marker;
  }
  readMoreSeasons(bytes, marker.seasons);
  if (!bytes.atEnd()) {
    return {};
  }
  marker.end = bytes.at();
  return marker;
}

Marker crossMarkerAt(std::string_view name, std::size_t at) {
  Marker marker;
  Bytes bytes(name, at);
  int season = 0;
  if (!bytes.number(4, season)) {
    return {};
  }
  const std::size_t seasonEnd = bytes.at();
  const bool two = seasonEnd - at == 2;
  bytes.skip(' ');
  const bool blank = bytes.at() != seasonEnd;
  if (!bytes.skip('x') && !(two && !blank && bytes.peek() == 'e')) {
    return {};
  }
  if (blank && !bytes.skip(' ')) {
    return {};
  }
  if (bytes.skip('a')) {  // 1xAll
    const bool all = bytes.skip('l') && bytes.skip('l') && bytes.atEnd();
    marker.seasons = {{season}, at, seasonEnd};
    marker.end = bytes.at();
    return all ? marker : Marker();
  }
  bytes.skip('e');
  const std::size_t begin = bytes.at();
  if (!readEpisodes(bytes, begin, 4, 'x', marker.episodes)) {
    return {};
  }
  std::size_t digits = 0;
  while (begin + digits < name.size() && isDigit(name[begin + digits])) {
    ++digits;
  }
  if (seasonEnd - at >= 3 && (digits >= 3 || blank)) {
    return {};  // 640x480
  }
  bytes.skipVersion();
  if (!bytes.atEnd() || digits > 3 || isCodec(marker.episodes.numbers.front())) {
    return {};
  }
  marker.seasons = {{season}, at, seasonEnd};
  marker.end = bytes.at();
  return marker;
}

Marker episodeMarkerAt(std::string_view name, std::size_t at) {
  Marker marker;
  Bytes bytes(name, at);
  if (name[at] == '#') {
    bytes.skip('#');
  } else if (!bytes.skipEpisodeLetter()) {
    return {};
  }
  if (!readEpisodes(bytes, at, 5, 'e', marker.episodes)) {
    return {};
  }
  bytes.skipVersion();
  if (!bytes.atEnd()) {
    return {};
  }
  marker.end = bytes.at();
  return marker;
}

}  // namespace

bool mayBeMarkerAt(std::string_view name, std::size_t at) {
  const char first = lower(name[at]);
  std::size_t next = at + 1;
  if (isDigit(first)) {
    while (next < name.size() && isDigit(name[next])) {
      ++next;
    }
  }
  const char second = next < name.size() ? lower(name[next]) : '\0';
  if (isDigit(first)) {
    return second == 'x' || second == 'e' || second == ' ';
  }
  return (isDigit(second) && (first == 's' || first == 'e' || first == 't')) ||
         (second == 'p' && (first == 's' || first == 'e')) || (second == 'o' && first == 's');
}

Marker markerAt(std::string_view name, std::size_t at) {
  switch (lower(name[at])) {
    case 's':
      return seasonMarkerAt(name, at, 's');
    case 't':
      return seasonMarkerAt(name, at, 't');
    case 'e':
      return episodeMarkerAt(name, at);
    default:
      return isDigit(name[at]) ? crossMarkerAt(name, at) : Marker();
  }
}

NumberList numbersIn(std::string_view text) {
  Bytes bytes(text, 0);
  int first = 0;
  if (!bytes.number(4, first)) {
    return {};
  }
  NumberList list{{first}, 0, text.size()};
  bytes.skipVersion();
  const std::string_view rest = text.substr(bytes.at());
  if (rest.empty() || rest == "完" || rest == "END" || rest == "完结") {
    return list;
  }
  const std::size_t gap = bytes.skipSeparators(3);
  bytes.skipEpisodeLetter();
  int last = 0;
  if (gap == 0 || !bytes.number(4, last)) {
    return {};
  }
  bytes.skipVersion();
  if (bytes.at() != text.size() || last <= first || last - first > kLongestRange) {
    return {};
  }
  addRange(first + 1, last, list.numbers);
  return list;
}

void addRange(int first, int last, std::vector<int>& numbers) {
  if (last < first || last - first > kLongestRange) {
    numbers.push_back(last);
    return;
  }
  numbers.reserve(numbers.size() + static_cast<std::size_t>(last - first) + 1);
  for (int number = first; number <= last; ++number) {
    numbers.push_back(number);
  }
}

bool isYear(int number) { return number >= 1900 && number <= 2035; }

int romanNumber(std::string_view word) {
  static constexpr std::string_view kRoman[] = {
      "I",  "II",  "III",  "IV",  "V",  "VI",  "VII",  "VIII",  "IX",  "X",
      "XI", "XII", "XIII", "XIV", "XV", "XVI", "XVII", "XVIII", "XIX", "XX"};
  const auto* const found = std::find(std::begin(kRoman), std::end(kRoman), word);
  return found == std::end(kRoman) ? 0 : static_cast<int>(found - std::begin(kRoman)) + 1;
}

}  // namespace libquilp
