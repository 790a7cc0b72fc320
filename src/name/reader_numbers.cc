#include <algorithm>
#include <cstdio>

#include "name/counter.h"
#include "name/reader.h"

// Seasons, episodes, parts and dates.

namespace libquilp {
namespace {

bool isDate(int year, int month, int day) {
  return isYear(year) && month >= 1 && month <= 12 && day >= 1 && day <= 31;
}

std::string dateText(int year, int month, int day) {
  char text[40];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d", year, month, day);
  return text;
}

int wordNumber(std::string_view word) {
  static constexpr std::string_view kWords[] = {"one", "two",   "three", "four", "five",
                                                "six", "seven", "eight", "nine", "ten"};
  for (int i = 0; i < 10; ++i) {
    if (word.size() == kWords[i].size() && lower(word[0]) == kWords[i][0] &&
        word.substr(1) == kWords[i].substr(1)) {
      return i + 1;
    }
  }
  return 0;
}

/// 2 for "Second", up to ten.
int ordinalWord(std::string_view word) {
  static constexpr std::string_view kWords[] = {"first", "second",  "third",  "fourth", "fifth",
                                                "sixth", "seventh", "eighth", "ninth",  "tenth"};
  for (int i = 0; i < 10; ++i) {
    if (word.size() == kWords[i].size() && lower(word[0]) == kWords[i][0] &&
        word.substr(1) == kWords[i].substr(1)) {
      return i + 1;
    }
  }
  return 0;
}

/// The word of "Seasons 1 to 3".
bool isRangeWord(std::string_view word) {
  return word == "to" || word == "thru" || word == "bis" || word == "à" || word == "a" ||
         word == "al" || word == "до" || word == "по";
}

/// The number that a word begins with, where what follows only makes it an ordinal: 2nd, 1ª, 5й.
int ordinal(std::string_view word) {
  std::size_t i = 0;
  int number = 0;
  while (i < word.size() && i < 3 && isDigit(word[i])) {
    number = number * 10 + (word[i++] - '0');
  }
  const std::string_view ending = word.substr(i);
  if (ending.empty() || i == 0 || isDigit(ending[0])) {
    return ending.empty() ? number : 0;
  }
  const bool known =
      ending == "st" || ending == "nd" || ending == "rd" || ending == "th" || ending == "ª" ||
      ending == "º" || ending == "Âª" || ending == "Âº" ||  // encoded twice
      ending == "й" || ending == "я" || ending == "a" || ending == "e" || ending == "ème";
  return known ? number : 0;
}

/// 1 to 12 for the English name of a month or its first three letters; 0 for any other word.
int monthOf(std::string_view word) {
  static constexpr std::string_view kMonths[] = {"january",   "february", "march",    "april",
                                                 "may",       "june",     "july",     "august",
                                                 "september", "october",  "november", "december"};
  for (int month = 0; month < 12; ++month) {
    const std::string_view name = kMonths[month];
    bool same = lower(word[0]) == name[0] && (word.size() == name.size() || word.size() == 3);
    for (std::size_t i = 0; same && i < word.size(); ++i) {
      same = lower(word[i]) == name[i];
    }
    if (same) {
      return month + 1;
    }
  }
  return 0;
}

}  // namespace

void Reader::findDate() {
  constexpr std::uint16_t kJoins = kBlankGap | kDotGap | kUnderscoreGap | kDashGap;
  const Token* const t = tokens_.token;
  for (std::size_t i = 0; i < tokens_.count; ++i) {
    if (t[i].taken || !isDigit(text_[t[i].begin])) {
      continue;
    }
    if (i + 2 < tokens_.count && t[i + 2].digits && !t[i + 2].taken) {
      // 4th November 2020, 14 Feb 2021
      const int day = ordinal(tokens_.text(i));
      const int month = day != 0 ? monthOf(tokens_.text(i + 1)) : 0;
      if (isDate(t[i + 2].number, month, day)) {
        name_.airDate = dateText(t[i + 2].number, month, day);
        take(NameField::kAirDate, i, i + 3);
        marker_ = i;
        markerEnd_ = i + 3;
        return;
      }
    }
    if (!t[i].digits) {
      continue;
    }
    const std::size_t size = t[i].end - t[i].begin;
    if (size == 8 && isDate(t[i].number / 10000, t[i].number / 100 % 100, t[i].number % 100)) {
      name_.airDate = dateText(t[i].number / 10000, t[i].number / 100 % 100, t[i].number % 100);
      take(NameField::kAirDate, i, i + 1);
      marker_ = i;
      markerEnd_ = i + 1;
      return;
    }
    if (i + 2 >= tokens_.count || !t[i + 1].digits || !t[i + 2].digits || t[i + 1].taken ||
        t[i + 2].taken || (t[i + 1].gap & ~kJoins) != 0 || t[i + 1].gap != t[i + 2].gap) {
      continue;
    }
    const int a = t[i].number;
    const int b = t[i + 1].number;
    const int c = t[i + 2].number;
    const std::size_t last = t[i + 2].end - t[i + 2].begin;
    if (t[i + 1].end - t[i + 1].begin > 2) {
      continue;
    }
    if (size == 4 && last <= 2 && isDate(a, b, c)) {
      name_.airDate = dateText(a, b, c);
    } else if (last == 4 && size <= 2 && isDate(c, b, a)) {
      name_.airDate = dateText(c, b, a);
    } else if (last == 4 && size <= 2 && isDate(c, a, b)) {
      name_.airDate = dateText(c, a, b);
    } else if (i > 0 && size == 2 && last == 2 && t[i + 1].end - t[i + 1].begin == 2 &&
               t[i + 1].gap == kDotGap && a >= 5 && a <= 35 && isDate(2000 + a, b, c)) {
      name_.airDate = dateText(2000 + a, b, c);
    } else {
      continue;
    }
    take(NameField::kAirDate, i, i + 3);
    marker_ = i;
    markerEnd_ = i + 3;
    return;
  }
}

void Reader::takeEpisodes(const NumberList& list, bool absolute) {
  std::vector<int>& numbers = absolute ? name_.absoluteEpisodes : name_.episodes;
  for (const int number : list.numbers) {
    bool known = false;
    for (const int other : numbers) {
      known = known || other == number;
    }
    if (!known) {
      numbers.push_back(number);
    }
  }
  addSpan(absolute ? NameField::kAbsoluteEpisode : NameField::kEpisode, list.begin, list.end);
}

void Reader::takeMarker(std::size_t i, const Marker& marker) {
  std::size_t end = i;
  while (end < tokens_.count && tokens_.token[end].begin < marker.end) {
    ++end;
  }
  if (!isFree(i, end)) {
    return;
  }
  for (std::size_t k = i; k < end; ++k) {
    tokens_.token[k].taken = true;
  }
  if (!marker.seasons.empty() && name_.seasons.empty()) {
    name_.seasons = marker.seasons.numbers;
    addSpan(NameField::kSeason, marker.seasons.begin, marker.seasons.end);
  }
  if (!marker.episodes.empty()) {
    takeEpisodes(marker.episodes, false);
  }
  if (!marker.disc.empty()) {
    name_.part = std::to_string(marker.disc.numbers.front());
    addSpan(NameField::kPart, marker.disc.begin, marker.disc.end);
  }
  if (marker_ == kNone || i < marker_) {
    marker_ = i;
  }
  if (markerEnd_ == kNone || end > markerEnd_) {
    markerEnd_ = end;
  }
}

void Reader::findMarkers() {
  for (std::size_t i = 0; i < tokens_.count; ++i) {
    const Token& word = tokens_.token[i];
    if (word.taken) {
      continue;
    }
    if (match_[i].tag != nullptr) {
      // "Se.1" is a season; elsewhere SE is a special edition
      const bool se =
          tokens_.text(i) == "Se" && i + 1 < tokens_.count && tokens_.token[i + 1].gap == kDotGap;
      const NameField field = se              ? NameField::kSeason
                              : isPartWord(i) ? NameField::kPart
                                              : match_[i].tag->field;
      if ((field == NameField::kSeason || field == NameField::kEpisode ||
           field == NameField::kPart) &&
          readWordMarker(i, field)) {
        continue;
      }
    }
    if (word.high && readCounter(i)) {
      continue;
    }
    if (match_[i].tag == nullptr && match_[i].words != 0) {
      continue;  // a resolution
    }
    const bool numbered = (word.gap & kOtherGap) != 0 && text_[word.begin - 1] == '#';
    const std::size_t size = word.end - word.begin;
    if (!word.anyDigit && !word.high && !numbered && size > 2) {
      continue;  // only "S 01" and "EP.05" have their number in the next word
    }
    const bool maybe = mayBeMarkerAt(text_, word.begin);
    if (!numbered && !maybe && size != 1 && (word.digits || !isDigit(text_[word.begin])) &&
        (size <= 6 || text_[word.end - 6] != 'S')) {
      continue;
    }
    Marker marker = maybe && !numbered ? markerAt(text_, word.begin) : Marker();
    if (numbered && word.digits) {
      marker = {};
      marker.episodes = {{word.number}, word.begin, word.end};
      marker.end = word.end;
    }
    if (marker.end == 0 ||
        (!name_.episodes.empty() && !marker.seasons.empty() && !name_.seasons.empty())) {
      // "S 01"
      if (word.end - word.begin == 1 && (text_[word.begin] == 'S') && i + 1 < tokens_.count &&
          tokens_.token[i + 1].digits && tokens_.token[i + 1].gap == kBlankGap &&
          tokens_.token[i + 1].end - tokens_.token[i + 1].begin == 2 && i > 0 && marker_ == kNone) {
        marker.seasons = {{tokens_.token[i + 1].number}, word.begin, tokens_.token[i + 1].end};
        marker.end = tokens_.token[i + 1].end;
        takeMarker(i, marker);
      }
      // "DieS01E06"
      else if (word.end - word.begin > 6 && !word.digits && marker_ == kNone &&
               text_[word.end - 6] == 'S' && markerAt(text_, word.end - 6).end == word.end) {
        split(i, word.end - 6 - word.begin);
      }
      // "2Of4"
      else if (isDigit(text_[word.begin]) && !word.digits) {
        const std::string_view text = tokens_.text(i);
        std::size_t digits = 0;
        while (digits < text.size() && isDigit(text[digits])) {
          ++digits;
        }
        const std::string_view of = text.substr(digits, 2);
        if (digits <= 2 && text.size() > digits + 2 &&
            (of == "of" || of == "Of" || of == "OF" || of == "iz") && isDigit(text[digits + 2])) {
          marker.episodes = {{ordinal(text.substr(0, digits))}, word.begin, word.end};
          marker.end = word.end;
          takeMarker(i, marker);
        }
      }
      // "2 of 4"
      continue;
    }
    takeMarker(i, marker);
  }
  for (std::size_t i = 1; i + 1 < tokens_.count; ++i) {
    if (!tokens_.token[i + 1].digits) {
      continue;
    }
    const std::string_view of = tokens_.text(i);
    if ((of == "of" || of == "из" || of == "Of") &&
        (tokens_.token[i - 1].digits || (tokens_.token[i - 1].taken && markerEnd_ == i)) &&
        tokens_.token[i + 1].number < 100 &&
        tokens_.token[i - 1].number <= tokens_.token[i + 1].number) {
      if (!tokens_.token[i - 1].taken && name_.episodes.empty()) {
        Marker marker;
        marker.episodes = {
            {tokens_.token[i - 1].number}, tokens_.token[i - 1].begin, tokens_.token[i - 1].end};
        marker.end = tokens_.token[i + 1].end;
        takeMarker(i - 1, marker);
      } else if (tokens_.token[i - 1].taken && marker_ != kNone) {
        tokens_.token[i].taken = tokens_.token[i + 1].taken = true;
        markerEnd_ = markerEnd_ == i ? i + 2 : markerEnd_;
      }
    }
  }
}

/// E12.251019: the day on which an episode was shown, after its number.
void Reader::findShortDate() {
  if (markerEnd_ == kNone || markerEnd_ >= tokens_.count || !name_.airDate.empty()) {
    return;
  }
  const Token& word = tokens_.token[markerEnd_];
  const int number = word.number;
  if (word.digits && !word.taken && word.end - word.begin == 6 &&
      isDate(2000 + number / 10000, number / 100 % 100, number % 100)) {
    name_.airDate = dateText(2000 + number / 10000, number / 100 % 100, number % 100);
    take(NameField::kAirDate, markerEnd_, markerEnd_ + 1);
    ++markerEnd_;
  }
}

bool Reader::readCounter(std::size_t i) {
  const Token& word = tokens_.token[i];
  const Counter counter = counterAt(text_, word.begin);
  if (counter.size == 0 || word.begin + counter.size != word.end) {
    return false;
  }
  Marker marker;
  NumberList list{{counter.first}, word.begin, word.end};
  if (counter.last > counter.first) {
    addRange(counter.first + 1, counter.last, list.numbers);
  }
  marker.end = word.end;
  switch (counter.unit) {
    case Counter::Unit::kSeason:
      marker.seasons = list;
      break;
    case Counter::Unit::kEpisode:
      marker.episodes = list;
      break;
    case Counter::Unit::kTotal:
      isSeries_ = true;
      if (counter.first == counter.last && counter.first > 1) {
        addRange(2, counter.first, list.numbers);
        list.numbers.front() = 1;
      }
      break;
    default:
      return false;
  }
  takeMarker(i, marker);
  return true;
}

/// "Night.Pier.Part.Two.720p.HDTV": a series in parts. A film has its year.
bool Reader::isShownInParts(std::size_t from) const {
  bool television = false;
  for (std::size_t i = 0; i < tokens_.count; ++i) {
    if (tokens_.token[i].digits && isYear(tokens_.token[i].number)) {
      return false;
    }
    television =
        television || (i >= from && match_[i].tag != nullptr &&
                       (match_[i].tag->value() == "HDTV" || match_[i].tag->value() == "PDTV"));
  }
  return television && name_.episodes.empty() && name_.seasons.empty() && from < tokens_.count &&
         match_[from];
}

// Season 2, Saison 1-3, 2nd Season, 5-й сезон, Episode 10, Серии: 1-10, CD1, Part 2
bool Reader::readWordMarker(std::size_t i, NameField field) {
  const Token* const t = tokens_.token;
  const std::size_t next = i + match_[i].words;
  Marker marker;
  if (field == NameField::kEpisode && next + 1 < tokens_.count && t[next].digits &&
      t[next + 1].digits && text_[t[next].begin - 1] == '#' && t[next + 1].gap == kDotGap) {
    // Episode #2.5
    marker.seasons = {{t[next].number}, t[next].begin, t[next].end};
    marker.episodes = {{t[next + 1].number}, t[next + 1].begin, t[next + 1].end};
    marker.end = t[next + 1].end;
    takeMarker(i, marker);
    return true;
  }
  NumberList list;
  std::size_t first = i;
  // "8 sez 21 ser": the numbers stand before their words
  const bool numberBefore = i > 0 && t[i - 1].digits && next + 1 < tokens_.count &&
                            t[next].digits && match_[next + 1].tag != nullptr &&
                            match_[next + 1].tag->field == NameField::kEpisode &&
                            (next + 2 >= tokens_.count || !t[next + 2].digits);
  const bool ordinalBefore = field != NameField::kPart && i > 0 && !t[i - 1].taken &&
                             (!t[i - 1].digits || numberBefore) &&
                             ordinal(tokens_.text(i - 1)) != 0;
  if (!ordinalBefore && next < tokens_.count &&
      (t[next].gap & (kSlashGap | kBarGap | kBracketGap)) == 0 && !t[next].taken) {
    const std::string_view word = tokens_.text(next);
    int number = t[next].digits && t[next].end - t[next].begin <= 4 ? t[next].number : -1;
    if (number < 0 && field != NameField::kEpisode) {
      number = romanNumber(word) != 0 ? romanNumber(word) : wordNumber(word);
      number = number == 0 ? -1 : number;
    }
    std::size_t end = t[next].end;
    if (number < 0 && isDigit(word[0])) {
      const NumberList versioned = numbersIn(word);
      number = versioned.empty() ? -1 : versioned.numbers.front();
    }
    if (isYear(number) && (field == NameField::kPart || tokens_.text(i).size() == 3)) {
      number = -1;  // La Cour 2010, El Ser 2019
    }
    if (number >= 0) {
      list = {{number}, t[i].begin, end};
      // 1-3, 1 & 2
      std::size_t last = next + 1;
      const bool worded = last + 1 < tokens_.count && isRangeWord(tokens_.text(last)) &&
                          t[last].bracket == t[next].bracket;
      last += worded ? 1 : 0;
      if (worded && match_[last].tag != nullptr && match_[last].tag->field == field) {
        last += match_[last].words;  // season 1 to season 4
      }
      while (last < tokens_.count && t[last].digits && !t[last].taken && t[next].digits &&
             t[last].end - t[last].begin <= 4 && t[last].number > list.numbers.back()) {
        const std::string_view between =
            text_.substr(t[last - 1].end, t[last].begin - t[last - 1].end);
        const bool range = worded || between == "-" || between == "~" || between == " ~ " ||
                           (field == NameField::kEpisode && between == " - ");
        if (!range || t[last].number - list.numbers.back() > 2000) {
          break;
        }
        addRange(list.numbers.back() + 1, t[last].number, list.numbers);
        list.end = t[last].end;
        ++last;
      }
    }
  }
  if (list.empty() && i > 0 && field != NameField::kPart && !t[i - 1].taken &&
      (t[i].gap & (kBracketGap | kSpacedDashGap)) == 0) {
    std::size_t before = i - 1;
    const bool ending =
        t[before].high && t[before].end - t[before].begin <= 4 && t[before].gap == kDashGap;  // 5-й
    if (before > 0 && (ending || (t[before - 1].digits &&
                                  ordinal("1" + std::string(tokens_.text(before))) != 0))) {
      --before;  // 10 th
    }
    const std::string_view word = tokens_.text(before);
    const int number =
        field == NameField::kSeason && ordinalWord(word) != 0 ? ordinalWord(word) : ordinal(word);
    if (number != 0 && !t[before].taken) {
      first = before;
      list = {{number}, t[before].begin, t[i].end};
    }
  }
  if (list.empty()) {
    return false;
  }
  marker.end = list.end;
  if (field == NameField::kSeason && list.numbers.size() == 1 && first == i && i > 0 &&
      next + 1 < tokens_.count && t[next + 1].digits && isYear(t[next + 1].number) &&
      t[next + 1].bracket != 0 && t[next].digits && t[next].end - t[next].begin == 1) {
    return false;  // Open Season 2 (2008)
  }
  if (field == NameField::kPart) {
    const std::string_view word = tokens_.text(i);
    name_.part = std::to_string(list.numbers.front());
    const bool volume = lower(word[0]) == 'v' && t[0].bracket != 0 && t[i].bracket == 0 &&
                        tokens_.bracket[t[0].bracket].square;
    if (lower(word[0]) != 'c' && lower(word[0]) != 'd' && !volume) {
      if (isShownInParts(next + 1)) {
        name_.part.clear();
        marker.episodes = list;
        takeMarker(first, marker);
        return true;
      }
      return false;  // "Part 2" belongs to the title
    }
    marker.disc = list;
    const std::size_t was = marker_;
    const std::size_t wasEnd = markerEnd_;
    takeMarker(first, marker);
    marker_ = was;
    markerEnd_ = wasEnd;
    return true;
  }
  if (field == NameField::kSeason) {
    marker.seasons = list;
  } else {
    // Star Wars Episode 7 ... 2015: a film's title counts its episodes, too
    if (list.numbers.size() == 1 && t[next].digits && t[next].end - t[next].begin == 1 &&
        name_.seasons.empty()) {
      for (std::size_t later = next + 1; later < tokens_.count; ++later) {
        if (t[later].digits && isYear(t[later].number)) {
          return false;
        }
      }
    }
    const std::string_view word = tokens_.text(i);
    const int number = list.numbers.front();
    if (lower(word[0]) == 'c' && list.numbers.size() == 1 && number >= 100 && number < 10000) {
      marker.seasons = {{number / 100}, t[i].begin, t[next].begin};
      list = {{number % 100}, t[next].begin, t[next].end};
      if (!name_.seasons.empty()) {
        marker.seasons = {};
      }
    }
    marker.episodes = list;
    // "21 ser iz 23": of how many
    if (first < i && next + 1 < tokens_.count && t[next + 1].digits &&
        (tokens_.text(next) == "iz" || tokens_.text(next) == "из" || tokens_.text(next) == "of")) {
      marker.end = t[next + 1].end;
    }
  }
  takeMarker(first, marker);
  return true;
}

}  // namespace libquilp
