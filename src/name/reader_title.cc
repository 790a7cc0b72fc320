#include <algorithm>

#include "name/reader.h"

// The title and the episode's title: what stands between the tags.

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

/// Whether the words are parted by dots and of no English title: German releases have their
/// language before the year, but "The.Good.German" is a title.
bool Reader::isSceneTitle(std::size_t from, std::size_t to) const {
  bool scene = to > from + 1;
  for (std::size_t i = from; i < to && scene; ++i) {
    const std::string_view word = tokens_.text(i);
    scene = (i == from || tokens_.token[i].gap == kDotGap) && word != "The" && word != "A" &&
            word != "An";
  }
  return scene;
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
      const bool german =
          beforeYear && isTitle && tag->words() == "german" && isSceneTitle(from, end - words);
      const bool accepted = tag->use == TagUse::kEndsTitle || german ||
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
      // "Row (UK) S02E01", "Row (abc2).s01e01": a country or a channel that tells two shows apart
      if (isTitle && close == end + 1 && close == marker_ && !tokens_.bracket[outer].square &&
          (isCountry(tokens_.text(end)) || (!match_[end] && !t[end].digits))) {
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
  if (titleEnd_ == marker_ && titleEnd_ > start_ + 2 && t[last].digits && t[last - 1].digits &&
      t[last].gap == kDotGap && (t[last - 1].gap & kSpacedDashGap) != 0 &&
      (t[titleEnd_].gap & kSpacedDashGap) != 0) {
    take(NameField::kOther, last - 1, titleEnd_);  // 05.5: a special between two episodes
    titleEnd_ = last - 1;
  } else if (titleEnd_ == marker_ && titleEnd_ > start_ + 1 && t[last].digits &&
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

/// "Ночной причал (S2E1-4) / Night Pier (S2E1-4)": the title in Latin letters after the marker. A
/// counter outside brackets belongs to the first title.
void Reader::readLatinTitle() {
  const Token* const t = tokens_.token;
  std::size_t from = titleEnd_;
  while (from < tokens_.count && t[from].taken) {
    ++from;
  }
  if (name_.title.empty() || hasLatin(name_.title) || from == titleEnd_ ||
      t[from - 1].bracket == 0 || from >= tokens_.count || (t[from].gap & kSlashGap) == 0) {
    return;
  }
  const std::size_t end = textEnd(from, true);
  if (!isFree(from, end) || !hasLatin(tokens_.text(from, end))) {
    return;
  }
  name_.alternativeTitles.insert(name_.alternativeTitles.begin(), name_.title);
  for (NameSpan& span : name_.spans) {
    span.field = span.field == NameField::kTitle ? NameField::kAlternativeTitle : span.field;
  }
  name_.title = cleaned(from, end);
  take(NameField::kTitle, from, end);
  const std::uint32_t markerEnd =
      end < tokens_.count ? static_cast<std::uint32_t>(markerAt(text_, t[end].begin).end) : 0;
  std::size_t last = end;
  while (last < tokens_.count && t[last].end <= markerEnd) {
    ++last;
  }
  if (isFree(end, last)) {
    take(NameField::kOther, end, last);  // the same numbers once more
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
  const std::string_view in = text_.substr(begin, end - begin);
  std::string text(in.size(), '\0');
  char* const out = text.data();
  std::size_t size = 0;
  for (std::size_t i = 0; i < in.size(); ++i) {
    char c = in[i];
    if (c == '_' || (dashes && c == '-')) {
      c = ' ';
    } else if (c == '.' && !blanks) {
      const bool initials = i > 0 && i + 1 < in.size() && isLetter(in[i - 1]) &&
                            isLetter(in[i + 1]) && (i < 2 || !isLetter(in[i - 2])) &&
                            (i + 2 >= in.size() || !isLetter(in[i + 2]));
      c = initials ? '.' : ' ';
    }
    if (c == ' ' && (size == 0 || out[size - 1] == ' ')) {
      continue;
    }
    out[size++] = c;
  }
  while (size != 0 && (out[size - 1] == ' ' || out[size - 1] == '-')) {
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
