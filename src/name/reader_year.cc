#include "name/reader.h"

// The year, and the years of a collection.

namespace libquilp {

/// "2011.harbour.lights.dvd5", "2011-Harbour Lights - 1080p": files that sort by their year. A
/// title that is a number has capitals and the same signs between all words: 2001.A.Space.Harbour.
bool Reader::isSortedByYear() const {
  const Token* const t = tokens_.token;
  const std::uint16_t gap = t[start_ + 1].gap;
  if ((gap != kDotGap && gap != kDashGap) || start_ + 3 >= tokens_.count || match_[start_ + 1] ||
      match_[start_ + 2] || !hasVideoTags()) {
    return false;
  }
  bool lowerCase = true;
  for (const char c : text_) {
    lowerCase = lowerCase && (c < 'A' || c > 'Z');
  }
  return lowerCase || (gap == kDashGap && t[start_ + 2].gap == kBlankGap);
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
                     ((t[start_ + 1].gap & kSpacedDashGap) != 0 || isSortedByYear());
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

}  // namespace libquilp
