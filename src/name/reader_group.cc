#include "name/reader.h"

// Who made the release, and what sites and catalogues left in its name.

namespace libquilp {
namespace {

constexpr std::string_view kTopLevels[] = {
    "com", "org", "net", "tv",  "to",   "cc",  "me",  "info", "ru",  "in",   "io",   "se",   "mx",
    "am",  "ag",  "lt",  "xyz", "biz",  "vip", "pw",  "ws",   "pro", "link", "site", "club", "bz",
    "cn",  "eu",  "us",  "nu",  "life", "top", "sbs", "lol",  "art", "wiki", "one",  "live"};

constexpr std::size_t kLongestTopLevel = 4;

bool isTopLevel(std::string_view word) {
  if (word.size() > kLongestTopLevel || !isLetter(word[0])) {
    return false;
  }
  for (const std::string_view known : kTopLevels) {
    if (word.size() == known.size()) {
      bool same = true;
      for (std::size_t i = 0; i < word.size(); ++i) {
        same = same && lower(word[i]) == known[i];
      }
      if (same) {
        return true;
      }
    }
  }
  return false;
}

bool isHex(std::string_view word) {
  bool digit = false;
  for (const char c : word) {
    if (!isDigit(c) && (lower(c) < 'a' || lower(c) > 'f')) {
      return false;
    }
    digit = digit || isDigit(c);
  }
  return digit;
}

struct Catalogue {
  std::string_view word;
  std::string_view source;
};

constexpr Catalogue kCatalogues[] = {{"imdb", "imdb"},     {"imdbid", "imdb"}, {"tmdb", "tmdb"},
                                     {"tmdbid", "tmdb"},   {"tvdb", "tvdb"},   {"tvdbid", "tvdb"},
                                     {"tvmaze", "tvmaze"}, {"anidb", "anidb"}};

}  // namespace

// www.site.com at the start, or in a bracket; "site.to - " at the start
void Reader::takeSites() {
  const Token* const t = tokens_.token;
  for (std::size_t i = 0; i + 1 < tokens_.count; ++i) {
    if (t[i].taken || (i != 0 && lower(text_[t[i].begin]) != 'w')) {
      continue;
    }
    const std::string_view word = tokens_.text(i);
    const bool www = word.size() >= 2 && word.size() <= 3 && lower(word.back()) == 'w' &&
                     lower(word[0]) == 'w' && lower(word[1]) == 'w' && (word.size() == 3 || i == 0);
    std::size_t end = i + 1;
    if (www) {
      while (end < tokens_.count && t[end].bracket == t[i].bracket && end < i + 4 &&
             (t[end].gap & (kDotGap | kDashGap)) != 0 &&
             (t[end].gap & (kSpacedDashGap | kBracketGap)) == 0) {
        ++end;
        if (isTopLevel(tokens_.text(end - 1))) {
          break;
        }
      }
      if (end > i + 1) {
        take(NameField::kOther, i, end);
      }
      continue;
    }
    if (i != 0 || t[1].gap != kDotGap || t[1].bracket != t[0].bracket) {
      continue;
    }
    const bool bracketed =
        t[0].bracket != 0 && (tokens_.count == 2 || t[2].bracket != t[0].bracket);
    const bool beforeDash = tokens_.count > 2 && (t[2].gap & kSpacedDashGap) != 0;
    if ((bracketed || beforeDash) && isTopLevel(tokens_.text(1))) {
      take(NameField::kOther, 0, 2);
    }
  }
}

// [tt0133093], {tmdb-603}, [imdbid=tt0133093], {edition-Director's Cut}
void Reader::takeIdentifiers() {
  const Token* const t = tokens_.token;
  for (std::size_t i = 0; i < tokens_.count; ++i) {
    if (t[i].bracket == 0 && text_[t[i].begin] != 't') {
      continue;
    }
    const std::string_view word = tokens_.text(i);
    if (word.size() >= 9 && word.size() <= 12 && word.substr(0, 2) == "tt") {
      bool digits = true;
      for (const char c : word.substr(2)) {
        digits = digits && isDigit(c);
      }
      if (digits) {
        name_.identifiers.push_back({"imdb", std::string(word)});
        const bool named = i > 0 && t[i].bracket != 0 && t[i - 1].bracket == t[i].bracket &&
                           tokens_.text(i - 1).substr(0, 4) == "imdb";
        take(NameField::kIdentifier, named ? i - 1 : i, i + 1);
      }
      continue;
    }
    if (t[i].bracket == 0 || i + 1 >= tokens_.count || t[i + 1].bracket != t[i].bracket) {
      continue;
    }
    if (word == "edition" && t[i + 1].gap == kDashGap &&
        (i == 0 || t[i - 1].bracket != t[i].bracket)) {
      const std::size_t end = bracketEnd(i);
      if (isFree(i, end)) {
        name_.edition = tokens_.text(i + 1, end);
        take(NameField::kEdition, i, end);
        i = end - 1;
      }
      continue;
    }
    if (!t[i + 1].digits) {
      continue;
    }
    for (const Catalogue& catalogue : kCatalogues) {
      if (word == catalogue.word) {
        name_.identifiers.push_back(
            {std::string(catalogue.source), std::string(tokens_.text(i + 1))});
        take(NameField::kIdentifier, i, i + 2);
        break;
      }
    }
  }
}

// [ABCD1234]; 10月新番: the month of a new show's first episode
void Reader::takeChecksum() {
  for (std::size_t i = 0; i < tokens_.count && tokens_.high; ++i) {
    if (tokens_.token[i].high && (tokens_.text(i).find("月新番") != std::string_view::npos ||
                                  tokens_.text(i).find("月番") != std::string_view::npos)) {
      take(NameField::kOther, i, i + 1);
    }
  }
  for (std::size_t i = 0; i < tokens_.count && tokens_.brackets > 1; ++i) {
    if (tokens_.token[i].bracket == 0) {
      continue;
    }
    const std::string_view word = tokens_.text(i);
    if (word.size() == 8 && alone(i) && isHex(word) && !(i == 0 && tokens_.count == 1)) {
      const bool date = tokens_.token[i].digits && isYear(tokens_.token[i].number / 10000);
      if (!date) {
        take(NameField::kOther, i, i + 1);
      }
    }
  }
}

bool Reader::groupFrom(std::size_t from, std::size_t to) {
  if (to - from > 1 && (tokens_.text(from) == "by" || tokens_.text(from) == "By")) {
    ++from;
  }
  if (!isFree(from, to)) {
    return false;
  }
  name_.group = tokens_.text(from, to);
  take(NameField::kGroup, from, to);
  return true;
}

void Reader::findGroup() {
  const Token* const t = tokens_.token;
  const std::size_t count = tokens_.count;
  if (!name_.group.empty()) {
    return;
  }
  if (leadGroupEnd_ != 0) {
    std::size_t from = 0;
    while (from < leadGroupEnd_ && t[from].taken) {
      ++from;
    }
    std::size_t to = from;
    while (to < leadGroupEnd_ && !t[to].taken && outerBracket(to) == outerBracket(from)) {
      ++to;
    }
    if (from < to && groupFrom(from, to)) {
      return;
    }
  }
  bool tagged = false;
  for (std::size_t i = titleEnd_; i < count && !tagged; ++i) {
    tagged = t[i].taken;
  }
  if (!tagged) {
    return;
  }
  // "-GROUP" at the end, before brackets
  std::size_t end = count;
  while (end > titleEnd_ && (outerBracket(end - 1) != 0 || (match_[end - 1] && t[end - 1].taken))) {
    --end;
  }
  std::size_t from = end;
  while (from > titleEnd_ && !t[from - 1].taken && outerBracket(from - 1) == 0) {
    --from;
    if ((t[from].gap & kDashGap) != 0) {
      break;
    }
  }
  // D-Z0N3: a letter alone before the dash
  if (from < end && from > titleEnd_ && (t[from].gap & kDashGap) != 0 && !t[from - 1].taken &&
      t[from - 1].end - t[from - 1].begin == 1 && outerBracket(from - 1) == 0) {
    --from;
  }
  // x264-TIDE-Reed: both
  while (from < end && from > titleEnd_ + 1 && t[from].gap == kDashGap && !t[from - 1].taken &&
         t[from - 1].gap == kDashGap && outerBracket(from - 1) == 0) {
    --from;
  }
  if (from < end && from > 0 && (t[from].gap & kDashGap) != 0 && groupFrom(from, end)) {
    return;
  }
  // A bracket at the end, or the last words
  std::size_t to = count;
  while (to > titleEnd_ && t[to - 1].taken) {
    --to;
  }
  // "(1080p x265 Name) [Team]": the name in the bracket of the tags
  if (to > titleEnd_ + 1 && alone(to - 1) && tokens_.bracket[t[to - 1].bracket].square &&
      !t[to - 2].taken && t[to - 2].bracket != 0 && !tokens_.bracket[t[to - 2].bracket].square &&
      to >= 3 && t[to - 3].taken) {
    --to;
  }
  if (to > titleEnd_ && t[to - 1].bracket != 0 && (t[to - 1].gap & kCommaGap) != 0) {
    return;  // [1999, USA, drama]
  }
  std::size_t begin = to;
  while (begin > titleEnd_ && !t[begin - 1].taken && t[begin - 1].bracket == t[to - 1].bracket) {
    --begin;
    if ((t[begin].gap & (kBracketGap | kSpacedDashGap | kBlankGap)) != 0) {
      break;
    }
  }
  if (begin < to && begin > 0 && begin >= titleEnd_) {
    groupFrom(begin, to);
  }
}

}  // namespace libquilp
