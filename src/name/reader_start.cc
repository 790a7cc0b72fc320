#include "name/reader.h"

// Where the title begins: what stands before it.

namespace libquilp {

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
    if (end - start_ == 2 && start_ == 0 && t[0].digits && t[1].digits && t[1].gap == kDotGap) {
      break;  // "[5.01] Title": a season and an episode
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
  if (start_ + 3 > tokens_.count) {
    return;
  }
  const auto same = [](std::string_view text, std::string_view word) {
    bool equal = text.size() == word.size();
    for (std::size_t i = 0; equal && i < word.size(); ++i) {
      equal = lower(text[i]) == word[i];
    }
    return equal;
  };
  const std::string_view first = tokens_.text(start_);
  for (const auto& words : kBroadcasters) {
    const std::size_t next = start_ + (words[1].empty() ? 1 : 2);
    if (!same(first, words[0]) || next + 2 > tokens_.count ||
        (!words[1].empty() && !same(tokens_.text(start_ + 1), words[1]))) {
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
    if (t[i].gap != kDashGap || t[i + 1].gap != kDashGap || t[i].taken) {
      continue;
    }
    const std::string_view word = tokens_.text(i);
    if (word.size() != 3 || !isDigit(word[1]) || !isDigit(word[2])) {
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

/// "165.Signal Row.s08e014": the number through all seasons before a title with blanks.
void Reader::readLeadCount() {
  const Token* const t = tokens_.token;
  if (tokens_.count < 4 || start_ != 0 || marker_ == kNone || name_.seasons.empty() ||
      !name_.absoluteEpisodes.empty() || !t[0].digits || t[0].end - t[0].begin != 3 || t[0].taken) {
    return;
  }
  std::size_t next = 1;
  NumberList list{{t[0].number}, t[0].begin, t[0].end};
  if (t[1].digits && t[1].gap == kDashGap && t[1].number > t[0].number &&
      t[1].number < t[0].number + 100) {
    addRange(t[0].number + 1, t[1].number, list.numbers);
    list.end = t[1].end;
    next = 2;
  }
  if (next + 1 >= marker_ || t[next].gap != kDotGap || t[next].digits ||
      t[next + 1].gap != kBlankGap || !isFree(0, next)) {
    return;
  }
  for (std::size_t i = 0; i < next; ++i) {
    tokens_.token[i].taken = true;
  }
  takeEpisodes(list, true);
  start_ = next;
}

}  // namespace libquilp
