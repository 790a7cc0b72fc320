#include <algorithm>

#include "name/reader.h"

// Episodes whose number stands alone: "Show - 05", "[05]", "Show.101.HDTV".

namespace libquilp {

/// Whether the name tells of the picture, as a release's name does.
bool Reader::hasVideoTags() const {
  for (std::size_t i = 0; i < tokens_.count; ++i) {
    if (match_[i] && (match_[i].tag == nullptr || match_[i].tag->field == NameField::kSource ||
                      match_[i].tag->field == NameField::kVideoCodec)) {
      return true;
    }
  }
  return false;
}

/// "11-02 Title", "[5.01] Title" and "02 Title": a season and an episode, or an episode, that a
/// file in a show's folder begins with. A film's name has a year or tags.
bool Reader::findLeadNumbers() {
  const Token* const t = tokens_.token;
  if (start_ != 0 || tokens_.count < 2 || !t[0].digits || t[0].taken || year_ != kNone ||
      marker_ != kNone) {
    return false;
  }
  if (hasVideoTags()) {
    return false;
  }
  const auto size = [t](std::size_t i) { return t[i].end - t[i].begin; };
  const auto isWordAfter = [this, t](std::size_t i) {
    return i < tokens_.count && !t[i].digits &&
           (t[i].gap & (kBlankGap | kSpacedDashGap | kUnderscoreGap | kBracketGap)) != 0;
  };
  const bool inFolder = surroundings_.inFolder || surroundings_.inSeasonFolder;
  const bool joined = t[1].gap == kDashGap || (t[1].gap == kDotGap && t[1].bracket != 0);
  Marker marker;
  if (t[1].digits && joined && size(0) <= 2 && size(1) == 2 && t[0].number > 0 &&
      t[0].number <= 40 && t[1].bracket == t[0].bracket && isWordAfter(2)) {
    marker.seasons = {{t[0].number}, t[0].begin, t[0].end};
    marker.episodes = {{t[1].number}, t[1].begin, t[1].end};
    marker.end = t[1].end;
  } else if (size(0) == 2 && text_[t[0].begin] == '0' && t[0].number > 0 && t[0].bracket == 0 &&
             (t[1].gap == kBlankGap || (!inFolder && (t[1].gap & kSpacedDashGap) != 0)) &&
             isWordAfter(1)) {
    marker.episodes = {{t[0].number}, t[0].begin, t[0].end};
    marker.end = t[0].end;
  } else {
    return false;
  }
  takeMarker(0, marker);
  start_ = inFolder ? 0 : markerEnd_;  // the folder has the title
  return true;
}

/// A number after a dash is the surest, then one alone in a bracket.
void Reader::findBareNumber() {
  std::size_t found[Tokens::kMost];
  std::size_t count = 0;
  for (std::size_t i = start_; i < tokens_.count; ++i) {
    const Token& word = tokens_.token[i];
    if (isDigit(text_[word.begin]) && !word.taken && !match_[i]) {
      found[count++] = i;
    }
  }
  for (int pass = 0; pass < 3 && count != 0; ++pass) {
    for (std::size_t k = 0; k < count; ++k) {
      const Token& word = tokens_.token[found[k]];
      const int kind = (word.gap & kSpacedDashGap) != 0 ? 0 : word.bracket != 0 ? 1 : 2;
      if (kind == pass && bareNumberAt(found[k])) {
        return;
      }
    }
  }
}

bool Reader::bareNumberAt(std::size_t i) {
  Token* const t = tokens_.token;
  // A range has two words: 01-12, 01 ~ 12
  std::size_t end = i + 1;
  NumberList list = numbersIn(tokens_.text(i));
  if (list.empty() && t[i].digits && t[i].end - t[i].begin == 5) {
    list = {{t[i].number}, t[i].begin, t[i].end};
  }
  if (list.empty() || (i > 1 && match_[i - 2].lines != 0 && match_[i - 2].words == 3)) {
    return false;  // 1280 x 720
  }
  if (tokens_.text(i) == "000" && i > 0 && t[i - 1].digits && t[i].gap == kBlankGap) {
    return false;  // 10 000
  }
  if (end < tokens_.count && !t[end].taken && t[end].bracket == t[i].bracket &&
      isDigit(text_[t[end].begin]) && (t[end].gap & (kDashGap | kTildeGap)) != 0) {
    const NumberList last = numbersIn(tokens_.text(end));
    const std::string_view between = text_.substr(t[i].end, t[end].begin - t[i].end);
    if (last.numbers.size() == 1 && last.numbers.front() > list.numbers.front() &&
        last.numbers.front() - list.numbers.front() < 2000 && !isYear(last.numbers.front()) &&
        (between == "-" || between == "~" || between == " ~ " || between == " - " ||
         between == "–" || between == " – ")) {
      addRange(list.numbers.front() + 1, last.numbers.front(), list.numbers);
      ++end;
    }
  }
  // " - 5.01 - ": a season and an episode
  else if (end < tokens_.count && t[i].digits && t[end].digits && t[end].gap == kDotGap &&
           t[i].number < 40 && t[end].end - t[end].begin == 2 && name_.seasons.empty() &&
           (((t[i].gap & kSpacedDashGap) != 0 &&
             (end + 1 == tokens_.count || (t[end + 1].gap & kSpacedDashGap) != 0)) ||
            // "Row.5.01.avi"
            (i > start_ && t[i].gap == kDotGap && !t[i - 1].digits && t[i].number > 0 &&
             text_[t[end].begin] == '0' && t[end].number > 0 && end + 1 == tokens_.count &&
             year_ == kNone && !fansub_))) {
    Marker marker;
    marker.seasons = {{t[i].number}, t[i].begin, t[i].end};
    marker.episodes = {{t[end].number}, t[end].begin, t[end].end};
    marker.end = t[end].end;
    takeMarker(i, marker);
    return true;
  }
  // 12.5: between two episodes
  else if (end < tokens_.count && t[end].digits && t[end].gap == kDotGap && t[end].number == 5 &&
           t[end].end - t[end].begin == 1 && (t[i].gap & kSpacedDashGap) != 0) {
    name_.extra = "special";
    take(NameField::kExtra, i, end + 1);
    marker_ = marker_ == kNone ? i : marker_;
    markerEnd_ = end + 1;
    return true;
  }
  const int number = list.numbers.front();
  if (list.numbers.size() == 1 && t[i].bracket != 0 &&
      (number == 720 || number == 1080 || number == 2160)) {
    return false;  // lines of the picture
  }
  bool versioned = !t[i].digits;
  if (!versioned && end < tokens_.count && !t[end].taken && t[end].end - t[end].begin == 2 &&
      lower(text_[t[end].begin]) == 'v' && isDigit(text_[t[end].begin + 1]) && !isYear(number)) {
    versioned = true;  // 001.v4
    ++end;
  }
  const std::size_t digits = t[i].digits ? t[i].end - t[i].begin : 2;
  const bool isRange = list.numbers.size() > 1;
  if (isYear(number) && !isRange && !(fansub_ && (t[i].gap & kSpacedDashGap) != 0)) {
    return false;
  }
  if (i > start_ && t[i].gap == kDotGap && t[i - 1].digits &&
      (i > 1 ? t[i - 1].gap & kBlankGap : 0) != 0) {
    return false;  // Evangelion 1.11
  }
  const bool atEnd = end == tokens_.count;
  const bool beforeBracket = !atEnd && t[end].bracket != t[i].bracket;
  const bool beforeTag =
      !atEnd && (endsTitle(end) || (match_[end] && match_[end].tag != nullptr &&
                                    match_[end].tag->field == NameField::kSource));
  // "Row.0307.PDTV": season 3
  const bool ofSource = beforeTag && match_[end].tag != nullptr && !fansub_ &&
                        match_[end].tag->field == NameField::kSource;
  const bool beforeDash = !atEnd && (t[end].gap & (kSpacedDashGap)) != 0;
  const bool bracketed =
      t[i].bracket != 0 && (i == 0 || t[i - 1].bracket != t[i].bracket) &&
      (atEnd || t[end].bracket != t[i].bracket || (match_[end] && match_[end].tag != nullptr));
  const bool spacedDash = (t[i].gap & kSpacedDashGap) != 0;
  const bool afterTV = t[i].bracket != 0 && i > 0 && t[i - 1].bracket == t[i].bracket &&
                       (tokens_.text(i - 1) == "TV" || tokens_.text(i - 1) == "Batch") &&
                       (t[i - 1].gap & kBracketGap) != 0;
  const bool parted = atEnd || beforeBracket || beforeTag;
  bool accepted = false;
  if (t[i].bracket != 0) {
    const bool square =
        tokens_.bracket[t[i].bracket].square && digits <= 4 && (fansub_ || versioned || isRange);
    accepted = afterTV || (bracketed && i > start_ && (square || (isRange && digits >= 2)));
  } else if (i == start_) {
    // "01 - Asteroid Blues" in a folder of a season or a show
    accepted = (surroundings_.inSeasonFolder && digits <= 3) ||
               (surroundings_.inFolder && digits >= 2 && digits <= 3 && (beforeDash || atEnd));
  } else {
    const bool padded = text_[t[i].begin] == '0' && digits >= 2 &&
                        (digits <= 3 || (digits == 4 && !ofSource)) &&
                        !(number == 7 && digits == 3);  // agent 007
    const bool dashed = spacedDash && digits <= 4 && (digits >= 2 || fansub_);
    const bool inFansub = fansub_ && (parted || isRange || beforeDash) && (digits >= 2 || isRange);
    const bool afterSeason = !name_.seasons.empty() && name_.episodes.empty() && digits >= 2 &&
                             (parted || i == markerEnd_);
    const bool tagged = !atEnd && match_[end];
    // "Row.7.PDTV": who records films from television tells their year
    const bool recorded = ofSource && year_ == kNone && match_[end].tag->value() == "PDTV";
    accepted = (recorded && digits == 1) || versioned || dashed || inFansub || afterSeason ||
               (isRange && digits >= 2 && parted) || (padded && (atEnd || beforeBracket || tagged));
  }
  const bool seasonAndEpisode = (digits == 3 || digits == 4) && !isRange && number % 100 > 0 &&
                                number >= 100 && !fansub_ && name_.seasons.empty();
  // A number tells both only where something else tells of a season: a television source, a
  // season's folder, or a year before it, which no film's title follows.
  const bool afterYear = year_ != kNone && year_ + 1 == i && digits == 3 && number % 100 <= 30 &&
                         !hasVideoTags() && t[i].gap != kDashGap && !atEnd &&
                         t[end].gap == t[i].gap && surroundings_.hint != NameKind::kMovie;
  const bool inContext =
      year_ == kNone && (digits == 3 || number % 100 < 40) &&
      ((beforeTag && match_[end].tag != nullptr && match_[end].tag->field == NameField::kSource &&
        match_[end].tag->value() != "PPV") ||
       surroundings_.inSeasonFolder);
  if (!accepted && seasonAndEpisode && i > start_ && t[i].bracket == 0 &&
      (afterYear || inContext)) {
    Marker marker;
    marker.seasons = {{number / 100}, t[i].begin, t[i].begin + digits - 2};
    marker.episodes = {{number % 100}, t[i].begin + digits - 2, t[i].end};
    marker.end = t[i].end;
    takeMarker(i, marker);
    return true;
  }
  // extant.10708.hdtv: season 1, episodes 7 and 8
  if (!accepted && digits == 5 && i > start_ && beforeTag &&
      number / 100 % 100 + 1 == number % 100) {
    Marker marker;
    marker.seasons = {{number / 10000}, t[i].begin, t[i].begin + 1};
    marker.episodes = {{number / 100 % 100, number % 100}, t[i].begin + 1, t[i].end};
    marker.end = t[i].end;
    takeMarker(i, marker);
    return true;
  }
  if (!accepted) {
    return false;
  }
  for (std::size_t k = i; k < end; ++k) {
    t[k].taken = true;
  }
  list.begin = t[i].begin;
  list.end = t[end - 1].end;
  // "16 (191)": the second number counts through all seasons
  NumberList absolute;
  if (end < tokens_.count && t[end].bracket != t[i].bracket && t[end].bracket != 0 &&
      !tokens_.bracket[t[end].bracket].square && isDigit(text_[t[end].begin]) && !match_[end]) {
    const std::size_t close = bracketEnd(end);
    absolute = numbersIn(tokens_.text(end, close));
    if (!absolute.empty() && absolute.numbers.size() == list.numbers.size() &&
        absolute.numbers.front() > list.numbers.front() && !isYear(absolute.numbers.front())) {
      absolute.begin = t[end].begin;
      absolute.end = t[close - 1].end;
      for (; end < close; ++end) {
        t[end].taken = true;
      }
      takeEpisodes(absolute, true);
    } else {
      absolute = {};
    }
  }
  takeEpisodes(list, name_.seasons.empty() && !surroundings_.inSeasonFolder && absolute.empty());
  if (end < tokens_.count && t[end].bracket == t[i].bracket &&
      (tokens_.text(end) == "END" || tokens_.text(end) == "FIN" || tokens_.text(end) == "完")) {
    take(NameField::kOther, end, end + 1);
    ++end;
  }
  marker_ = marker_ == kNone ? i : std::min(marker_, i);
  markerEnd_ = markerEnd_ == kNone ? end : std::max(markerEnd_, end);
  return true;
}

}  // namespace libquilp
