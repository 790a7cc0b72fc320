#include <algorithm>

#include "name/reader.h"

// The title, the year and the episode's title: what stands between the tags.

namespace libquilp {
namespace {

bool hasLatin(std::string_view text) {
  for (const char c : text) {
    if (isLetter(c)) {
      return true;
    }
  }
  return false;
}

bool hasLowerCase(std::string_view text) {
  for (const char c : text) {
    if (c >= 'a' && c <= 'z') {
      return true;
    }
  }
  return false;
}

/// A word of another script: no Latin letter in it, with an accent or without.
bool isForeign(const Token& token, std::string_view text) {
  if (!token.high) {
    return false;
  }
  bool other = false;
  for (const char c : text) {
    other = other || (static_cast<unsigned char>(c) >= 0xCE && c != '\xE2');  // Ⅱ is no letter
  }
  return other && !hasLatin(text);
}

/// Letters of both Latin and another script: DIEBUSTER&合体劇場版.
bool isMixed(std::string_view text) {
  for (const char c : text) {
    if (static_cast<unsigned char>(c) >= 0xE3 && static_cast<unsigned char>(c) < 0xEF) {
      return hasLatin(text);
    }
  }
  return false;
}

/// A country that catalogues add to a show's title.
bool isCountry(std::string_view word) {
  return word == "UK" || word == "US" || word == "AU" || word == "NZ" || word == "CA";
}

bool isAka(std::string_view word) {
  return lower(word[0]) == 'a' &&
         (word == "AKA" || word == "aka" || word == "Aka" || word == "a.k.a" || word == "A.K.A");
}

}  // namespace

void Reader::findStart() {
  const Token* const t = tokens_.token;
  while (start_ < tokens_.count) {
    const std::uint8_t outer = outerBracket(start_);
    if (outer == 0) {
      if (!t[start_].taken || start_ == marker_) {
        break;
      }
      ++start_;  // a site's name
      continue;
    }
    const std::size_t end = bracketEnd(start_);
    bool taken = true;
    bool tags = true;
    bool marker = false;
    for (std::size_t i = start_; i < end; ++i) {
      taken = taken && t[i].taken;
      tags = tags && (t[i].taken || match_[i]);
      marker = marker || (marker_ != kNone && i >= marker_ && i < markerEnd_);
    }
    if (marker) {
      break;
    }
    const bool serial = end - start_ == 1 && t[start_].digits && t[start_].number >= 10000;
    if (taken || tags || serial) {
      if (tags && !taken) {
        takeTags(start_, end);  // [1080p] Title
      }
      start_ = end;
      continue;
    }
    const bool year = end - start_ == 1 && t[start_].digits && isYear(t[start_].number);
    bool inner = false;
    for (std::size_t i = start_; i < end && end - start_ > 1; ++i) {
      inner = inner || (t[i].digits && isYear(t[i].number) && i + 1 == end && i > start_);
    }
    // "[Group][Site] Title": the text outside is the title
    if (leadGroupEnd_ != 0 && tokens_.bracket[outer].square && end < tokens_.count &&
        outerBracket(end) == 0 && isFree(start_, end) && !t[end].taken && !match_[end] &&
        !t[end].digits) {
      start_ = end;
      break;
    }
    if (end == tokens_.count || leadGroupEnd_ != 0 || inner ||
        (!tokens_.bracket[outer].square && !year)) {
      break;
    }
    if (!year) {
      leadGroupEnd_ = end;
      fansub_ = true;
    }
    start_ = end;
    if (year) {
      year_ = end - 1;
    }
  }
}

/// "[Title][07][720p]" and "[Title].148.[XviD]": no text but the first bracket's.
void Reader::undoLeadGroup() {
  const Token* const t = tokens_.token;
  std::size_t i = start_;
  std::size_t numbers = 0;
  while (i < tokens_.count && (t[i].digits || t[i].taken)) {
    numbers += t[i].taken ? 0 : 1;
    ++i;
  }
  const bool number = numbers == 1 && (outerBracket(start_) != 0 || t[start_].number > 9);
  if (leadGroupEnd_ == 0 || !number || (i < tokens_.count && !endsTitle(i) && !match_[i])) {
    return;
  }
  start_ = 0;
  while (t[start_].taken) {
    ++start_;
  }
  leadGroupEnd_ = 0;
}

/// "BBC - The Quiet Harbour", "IMAX.The.Quiet.Harbour": who showed a film is no part of its title.
void Reader::skipBroadcaster() {
  static constexpr std::string_view kBroadcasters[][2] = {{"bbc", ""},
                                                          {"imax", ""},
                                                          {"natgeo", ""},
                                                          {"nat", "geo"},
                                                          {"nat geo", ""},
                                                          {"national", "geographic"},
                                                          {"history", "channel"},
                                                          {"discovery", "channel"},
                                                          {"smithsonian", "channel"}};
  const Token* const t = tokens_.token;
  const auto is = [this](std::size_t i, std::string_view word) {
    const std::string_view text = tokens_.text(i);
    bool same = text.size() == word.size() && lower(text[0]) == word[0];
    for (std::size_t k = 1; same && k < word.size(); ++k) {
      same = lower(text[k]) == word[k];
    }
    return same;
  };
  for (const auto& words : kBroadcasters) {
    const std::size_t next = start_ + (words[1].empty() ? 1 : 2);
    if (next + 2 > tokens_.count || !is(start_, words[0]) ||
        (!words[1].empty() && !is(start_ + 1, words[1]))) {
      continue;
    }
    // Two words of a title must be left: "BBC News" is one.
    const auto isTitle = [this, t](std::size_t i) {
      return !t[i].taken && !match_[i] && !t[i].digits && t[i].bracket == 0;
    };
    if (isFree(start_, next) && isTitle(next) && isTitle(next + 1)) {
      take(NameField::kOther, start_, next);
      start_ = next;
    }
    return;
  }
}

/// "Keeper-f02-Quiet Harbour": a film of a series; "Quiet Harbour-x02-Making Of": an extra of a
/// film.
void Reader::readFilmNumber() {
  const Token* const t = tokens_.token;
  for (std::size_t i = start_ + 1; i + 1 < tokens_.count; ++i) {
    const std::string_view word = tokens_.text(i);
    if (t[i].taken || word.size() != 3 || !isDigit(word[1]) || !isDigit(word[2]) ||
        t[i].gap != kDashGap || t[i + 1].gap != kDashGap) {
      continue;
    }
    if (word[0] == 'f' && marker_ == kNone) {
      name_.alternativeTitles.push_back(cleaned(start_, i));
      take(NameField::kAlternativeTitle, start_, i);
      take(NameField::kOther, i, i + 1);
      start_ = i + 1;
    } else if (word[0] == 'x') {
      std::size_t end = i + 1;
      while (end < tokens_.count && !t[end].taken && !match_[end]) {
        ++end;
      }
      name_.extra = "bonus";
      take(NameField::kExtra, i, end);
    }
  }
}

/// "group-some.title.2012.720p.bluray.x264": the group before the title, all in lower case.
void Reader::skipScenePrefix() {
  const Token* const t = tokens_.token;
  if (start_ != 0 || tokens_.count < 5 || t[1].gap != kDashGap || t[0].taken || t[1].taken) {
    return;
  }
  for (std::size_t i = 2; i < tokens_.count; ++i) {
    if ((t[i].gap & ~(kDotGap | kDashGap)) != 0 || ((t[i].gap & kDashGap) != 0 && !match_[i])) {
      return;
    }
  }
  for (const char c : text_) {
    if (c >= 'A' && c <= 'Z') {
      return;
    }
  }
  if (endsTitle(tokens_.count - 1)) {
    name_.group = std::string(tokens_.text(0));
    take(NameField::kGroup, 0, 1);
    start_ = 1;
  }
}

/// The last plausible year outside the title. In brackets it is surer; a title is never emptied.
void Reader::findYear() {
  const Token* const t = tokens_.token;
  std::size_t end = tokens_.count;
  for (std::size_t i = start_; i < tokens_.count; ++i) {
    if ((endsTitle(i) && i > start_) || (t[i].taken && i > start_)) {
      end = i;
      break;
    }
  }
  std::size_t bracketed = kNone;
  std::size_t plain = kNone;
  const bool leads = start_ + 1 < end && t[start_].digits && isYear(t[start_].number) &&
                     t[start_].end - t[start_].begin == 4 && t[start_].bracket == 0 &&
                     !t[start_].taken && !t[start_ + 1].digits &&
                     (t[start_ + 1].gap & kSpacedDashGap) != 0;
  for (std::size_t i = start_; i < end; ++i) {
    if (!t[i].digits || !isYear(t[i].number) || t[i].taken || t[i].end - t[i].begin != 4) {
      continue;
    }
    if (t[i].bracket != 0 && t[i].bracket != t[start_].bracket) {
      bracketed = i;
    } else if (i > start_ && !(plain != kNone && t[plain].number == t[i].number)) {
      plain = i;
    }
  }
  if (bracketed == kNone && plain == kNone) {
    for (std::size_t i = end; i < tokens_.count; ++i) {
      if (t[i].digits && !t[i].taken && isYear(t[i].number) && t[i].end - t[i].begin == 4 &&
          i > start_) {
        plain = i;
        break;
      }
    }
  }
  if (bracketed != kNone) {
    year_ = bracketed;
  } else if (plain != kNone) {
    year_ = plain;
  }
  if (year_ != kNone) {
    takeYears();
    for (std::size_t i = year_ + 1; i < tokens_.count; ++i) {
      if (t[i].digits && t[i].number == name_.year && !t[i].taken && t[i].gap != kDashGap) {
        take(NameField::kOther, i, i + 1);  // the same year once more
      }
    }
  } else if (leads && marker_ == kNone) {  // 2011 - Harbour Lights
    name_.year = t[start_].number;
    take(NameField::kYear, start_, start_ + 1);
    ++start_;
  }
}

/// The year, or those of a collection: 2003-2017.
void Reader::takeYears() {
  const Token* const t = tokens_.token;
  const auto isRange = [this, t](std::size_t first, std::size_t last) {
    return last < tokens_.count && first >= start_ && t[first].digits && t[last].digits &&
           t[first].end - t[first].begin == 4 && t[last].end - t[last].begin == 4 &&
           isYear(t[first].number) && isYear(t[last].number) && t[first].number < t[last].number &&
           t[first].bracket == t[last].bracket &&
           (t[last].gap & (kDashGap | kSpacedDashGap | kTildeGap)) != 0;
  };
  std::size_t first = year_;
  std::size_t last = year_;
  if (year_ > start_ + 1 && isRange(year_ - 1, year_)) {
    first = year_ - 1;
  } else if (isRange(year_, year_ + 1) && !t[year_ + 1].taken) {
    last = year_ + 1;
  }
  year_ = first;
  name_.year = t[first].number;
  name_.lastYear = last != first ? t[last].number : 0;
  take(NameField::kYear, first, last + 1);
}

/// Tags that are words of titles, too, count as tags where they meet the tags after the title.
std::size_t Reader::walkedBack(std::size_t from, std::size_t end, bool beforeYear,
                               bool isTitle) const {
  const std::size_t least = isTitle ? 1 : 0;  // words that stay
  bool lowerCase = false;
  bool capitals = false;  // the tags so far are written in capitals
  for (std::size_t i = from; i < end; ++i) {
    lowerCase = lowerCase || (!tokens_.token[i].upper && !tokens_.token[i].digits);
  }
  for (;;) {
    bool moved = false;
    for (std::size_t words = 4; words > 0 && !moved; --words) {
      if (end < from + words + least || match_[end - words].words != words ||
          !isFree(end - words, end)) {
        continue;
      }
      const Tag* const tag = match_[end - words].tag;
      if (tag == nullptr || tag->field == NameField::kSeason || tag->field == NameField::kEpisode ||
          tag->field == NameField::kPart) {
        continue;
      }
      const bool capital = lowerCase && tokens_.token[end - words].upper;
      const bool accepted = tag->use == TagUse::kEndsTitle ||
                            (tag->use == TagUse::kMayBeTitle &&
                             (!beforeYear || capital || tag->field == NameField::kEdition)) ||
                            (tag->use == TagUse::kOnlyAfter && capital &&
                             (!beforeYear || capitals || tag->field == NameField::kEdition));
      // "The.Greek.FRENCH": a word in another case than the tags belongs to the title
      if (accepted && !(capitals && !capital && tag->use == TagUse::kMayBeTitle)) {
        end -= words;
        moved = true;
        capitals = capitals ||
                   (capital && tag->use == TagUse::kMayBeTitle && tag->field != NameField::kOther);
      }
    }
    if (!moved) {
      return end;
    }
  }
}

std::size_t Reader::textEnd(std::size_t from, bool isTitle) const {
  const Token* const t = tokens_.token;
  std::size_t end = from;
  for (; end < tokens_.count; ++end) {
    if (t[end].taken) {
      break;
    }
    if (endsTitle(end) && end > from) {
      break;
    }
    if (!isTitle && endsTitle(end)) {
      break;
    }
    // A bracket with a tag in it, or one after the title
    const std::uint8_t outer = outerBracket(end);
    const bool glued = end > from && !tokens_.bracket[outer].square && t[end].gap == kBracketGap &&
                       text_[t[end].begin - 1] != ' ' &&
                       tokens_.bracket[outer].begin == t[end - 1].end && t[end].high;
    if (outer != 0 && end > from && (outerBracket(end - 1) != outer) && !glued) {
      const std::size_t close = bracketEnd(end);
      if (isTitle && close == end + 1 && close == marker_ && isCountry(tokens_.text(end)) &&
          !tokens_.bracket[outer].square) {
        continue;
      }
      bool tag = tokens_.bracket[outer].square || close == tokens_.count;
      for (std::size_t i = end; i < close; ++i) {
        tag = tag || t[i].taken || match_[i];
      }
      bool textAfter = false;
      for (std::size_t i = close; i < tokens_.count && !textAfter; ++i) {
        if (t[i].taken || match_[i] || outerBracket(i) != 0) {
          break;
        }
        textAfter = true;
      }
      const bool numberAfter = close < tokens_.count && (t[close].gap & kSpacedDashGap) != 0;
      bool plain = fansub_ && isTitle && (!tokens_.bracket[outer].square || numberAfter);
      for (std::size_t i = end; i < close; ++i) {
        plain = plain && !t[i].taken && !match_[i];
      }
      if ((tag || !textAfter) && !plain) {
        break;
      }
    }
  }
  // "Collection" before the years of one is a tag.
  const bool beforeYear =
      name_.lastYear == 0 && (end == year_ || (end < tokens_.count && t[end].taken));
  if (end == tokens_.count && !isTitle) {
    // "S01E02 FRENCH": nothing but a tag in capitals
    const bool tag = end == from + 1 && match_[from] && t[from].upper && name_.title.size() > 1 &&
                     hasLowerCase(name_.title);
    return tag ? from : end;
  }
  return walkedBack(from, end, beforeYear, isTitle);
}

void Reader::readTitle() {
  const Token* const t = tokens_.token;
  bool outside = false;
  // Only brackets: [Group][Title][01][1080p]
  for (std::size_t i = start_; i < tokens_.count && !outside; ++i) {
    if (t[i].taken || match_[i]) {
      break;
    }
    outside = outerBracket(i) == 0;
    if (!outside) {
      break;
    }
  }
  if (!outside && start_ < tokens_.count && outerBracket(start_) != 0 && !t[start_].taken &&
      tokens_.bracket[outerBracket(start_)].square) {
    readBracketTitles();
    return;
  }
  titleEnd_ = start_ < tokens_.count ? textEnd(start_, true) : start_;
  // "Show - 05 - S01E05": the number through all seasons stands before the marker
  const std::size_t last = titleEnd_ - 1;
  if (titleEnd_ == marker_ && titleEnd_ > start_ + 1 && t[last].digits &&
      (t[last].gap & kSpacedDashGap) != 0 && t[last].end - t[last].begin >= 2 &&
      (t[titleEnd_].gap & kSpacedDashGap) != 0 && name_.absoluteEpisodes.empty()) {
    name_.absoluteEpisodes.push_back(t[last].number);
    take(NameField::kAbsoluteEpisode, last, titleEnd_);
    titleEnd_ = last;
  }
  if (titleEnd_ > start_ && isFree(start_, titleEnd_)) {
    addTitles(start_, titleEnd_);
    return;
  }
  titleEnd_ = start_;
  // "Episode 14 A Title": the text after the marker
  if (marker_ == start_ && markerEnd_ < tokens_.count && outerBracket(markerEnd_) == 0 &&
      !surroundings_.inFolder) {
    std::size_t from = start_;
    while (from < tokens_.count && t[from].taken) {
      ++from;
    }
    const std::size_t end = textEnd(from, true);
    if (end > from && isFree(from, end)) {
      addTitles(from, end);
      titleEnd_ = end;
    }
  }
}

void Reader::readBracketTitles() {
  const Token* const t = tokens_.token;
  std::vector<std::pair<std::size_t, std::size_t>> texts;
  std::size_t i = start_;
  while (i < tokens_.count) {
    const std::size_t end = outerBracket(i) != 0 ? bracketEnd(i) : i + 1;
    std::size_t textTo = i;
    while (textTo < end && !t[textTo].taken &&
           !(match_[textTo] && (endsTitle(textTo) || match_[textTo].words >= end - i))) {
      ++textTo;
    }
    const bool numbers = textTo == i + 1 && t[i].digits;
    if (textTo > i && !numbers && tokens_.text(i, textTo) != "TV") {
      texts.emplace_back(i, textTo);
      if (textTo < end) {
        i = end;
        break;
      }
    } else if (!texts.empty()) {
      break;
    }
    i = end;
  }
  titleEnd_ = i;
  if (texts.empty()) {
    titleEnd_ = start_;
    return;
  }
  std::size_t best = 0;
  if (texts.size() > 1 && !hasLatin(tokens_.text(texts[0].first, texts[0].second)) &&
      hasLatin(tokens_.text(texts[1].first, texts[1].second))) {
    best = 1;
  }
  addTitles(texts[best].first, texts[best].second);
  for (std::size_t k = 0; k < texts.size() && k < 2; ++k) {
    if (k != best) {
      name_.alternativeTitles.push_back(cleaned(texts[k].first, texts[k].second));
      take(NameField::kAlternativeTitle, texts[k].first, texts[k].second);
    }
  }
}

/// One title, or several: "A / B", "A | B", "A AKA B", and a Chinese one before a Latin one. The
/// first is the title, unless only a later one is in Latin letters.
void Reader::addTitles(std::size_t from, std::size_t to) {
  const Token* const t = tokens_.token;
  bool several = t[from].high;
  for (std::size_t i = from + 1; i < to && !several; ++i) {
    several =
        t[i].high || (t[i].gap & (kSlashGap | kBarGap)) != 0 || lower(text_[t[i].begin]) == 'a';
  }
  if (!several) {
    name_.title = cleaned(from, to);
    take(NameField::kTitle, from, to);
    return;
  }
  struct Piece {
    std::size_t from;
    std::size_t to;
  };
  Piece pieces[8];
  std::size_t count = 0;
  std::size_t begin = from;
  bool allForeign = isForeign(t[from], tokens_.text(from));
  bool allLatin = !allForeign;
  for (std::size_t i = from + 1; i <= to && count < 7; ++i) {
    if (i == to) {
      pieces[count++] = {begin, i};
      break;
    }
    const std::string_view between = text_.substr(t[i - 1].end, t[i].begin - t[i - 1].end);
    const bool slash = (t[i].gap & kSlashGap) != 0 &&
                       (between.find(' ') != std::string_view::npos || t[i].bracket != 0);
    const bool initials = i + 3 < to && t[i + 2].gap == kDotGap && isAka(tokens_.text(i, i + 3));
    const std::size_t akaWords = initials ? 3 : isAka(tokens_.text(i)) && i + 1 < to ? 1 : 0;
    const bool aka = akaWords != 0 && i > begin;
    const bool foreign = isForeign(t[i], tokens_.text(i));
    bool script = false;
    const bool parted =
        (t[i].gap & (kBlankGap | kDotGap | kUnderscoreGap)) != 0 && count == 0 && begin == from;
    if (parted && ((allForeign && !foreign && !t[i].digits) || (allLatin && foreign))) {
      script = hasLatin(foreign ? tokens_.text(from, i) : tokens_.text(i));
      for (std::size_t k = i; k < to; ++k) {
        script = script && isForeign(t[k], tokens_.text(k)) == foreign &&
                 (foreign || !isMixed(tokens_.text(k)));
      }
    }
    allLatin = allLatin && !foreign;
    allForeign = allForeign && (foreign || t[i].digits);
    if (slash || (t[i].gap & kBarGap) != 0 || aka || script) {
      pieces[count++] = {begin, i};
      begin = aka ? i + akaWords : i;
      if (aka) {
        i += akaWords;
      }
      if (begin + 1 == to || i + 1 > to) {
        pieces[count++] = {begin, to};
        break;
      }
    }
  }
  if (count == 0) {
    pieces[count++] = {from, to};
  }
  std::size_t best = 0;
  if (!hasLatin(tokens_.text(pieces[0].from, pieces[0].to))) {
    for (std::size_t i = 1; i < count && best == 0; ++i) {
      best = hasLatin(tokens_.text(pieces[i].from, pieces[i].to)) ? i : 0;
    }
  }
  name_.title = cleaned(pieces[best].from, pieces[best].to);
  take(NameField::kTitle, pieces[best].from, pieces[best].to);
  for (std::size_t i = 0; i < count; ++i) {
    if (i != best) {
      name_.alternativeTitles.push_back(cleaned(pieces[i].from, pieces[i].to));
      take(NameField::kAlternativeTitle, pieces[i].from, pieces[i].to);
    }
  }
}

/// Whether dashes stand for blanks: Harbour-Lights-2011-1080p.
bool Reader::hasOnlyDashes() const {
  const Token* const t = tokens_.token;
  for (std::size_t i = 1; i < tokens_.count; ++i) {
    if (t[i].gap != kDashGap && t[i].gap != 0) {
      return false;
    }
  }
  return tokens_.count > 3;
}

std::string Reader::cleaned(std::size_t from, std::size_t to) const {
  const Token* const t = tokens_.token;
  bool blanks = false;
  for (std::size_t i = from + 1; i < to; ++i) {
    blanks = blanks || (t[i].gap & kBlankGap) != 0;
  }
  const bool dashes = hasOnlyDashes();
  std::size_t begin = t[from].begin;
  std::size_t end = t[to - 1].end;
  const Bracket& first = tokens_.bracket[t[from].bracket];
  if (t[from].bracket != 0 && !first.square && first.end < end && first.begin < begin) {
    begin = first.begin;  // (500) Days
  }
  while (end < text_.size() && (text_[end] == '!' || text_[end] == '?')) {
    ++end;
  }
  const Bracket& last = tokens_.bracket[t[to - 1].bracket];
  if (t[to - 1].bracket != 0 && !last.square && !last.open && last.begin > begin &&
      last.end > end) {
    end = last.end;
  }
  std::string text(end - begin, '\0');
  std::size_t size = 0;
  for (std::size_t i = begin; i < end; ++i) {
    char c = text_[i];
    if (c == '_' || (dashes && c == '-')) {
      c = ' ';
    } else if (c == '.' && !blanks) {
      const bool initials = i > begin && i + 1 < end && isLetter(text_[i - 1]) &&
                            isLetter(text_[i + 1]) && (i < begin + 2 || !isLetter(text_[i - 2])) &&
                            (i + 2 >= end || !isLetter(text_[i + 2]));
      c = initials ? '.' : ' ';
    }
    if (c == ' ' && (size == 0 || text[size - 1] == ' ')) {
      continue;
    }
    text[size++] = c;
  }
  while (size != 0 && (text[size - 1] == ' ' || text[size - 1] == '-')) {
    --size;
  }
  text.resize(size);
  return text;
}

void Reader::readEpisodeTitle() {
  if (markerEnd_ == kNone || markerEnd_ >= tokens_.count || markerEnd_ < titleEnd_ ||
      (name_.episodes.empty() && name_.absoluteEpisodes.empty() && name_.airDate.empty())) {
    return;
  }
  std::size_t from = markerEnd_;
  if (outerBracket(from) != 0 && tokens_.bracket[outerBracket(from)].square) {
    return;
  }
  std::size_t to = 0;
  if (outerBracket(from) != 0 && (from == 0 || outerBracket(from - 1) != outerBracket(from))) {
    const std::string_view sign = text_.substr(tokens_.bracket[outerBracket(from)].begin, 3);
    if (sign != "「" && sign != "『") {
      return;
    }
    to = bracketEnd(from);
  } else {
    to = textEnd(from, false);
  }
  if (to <= from || !isFree(from, to)) {
    return;
  }
  name_.episodeTitle = cleaned(from, to);
  take(NameField::kEpisodeTitle, from, to);
}

}  // namespace libquilp
