#include "name/reader.h"

// Which words are tags, and what they fill.

namespace libquilp {
namespace {

constexpr std::size_t kMostWords = 4;

/// Whether the letters and digits of a name's bytes are those of a tag.
bool sameWords(std::string_view bytes, std::string_view words) {
  std::size_t i = 0;
  for (const char c : bytes) {
    if (i < words.size() && words[i] == lower(c)) {
      ++i;
      continue;
    }
    const bool counts = isDigit(c) || isLetter(c) || static_cast<unsigned char>(c) >= 0x80;
    if (!counts) {
      continue;
    }
    while (i < words.size() && (words[i] == ' ' || words[i] == '\'')) {
      ++i;
    }
    if (i == words.size() || words[i] != lower(c)) {
      return false;
    }
    ++i;
  }
  return i == words.size();
}

int linesOf(int width, int height) {
  static constexpr int kKnown[] = {240, 360, 480, 540, 576, 720, 1080, 1440, 2160, 4320};
  for (const int lines : kKnown) {
    if (std::abs(height - lines) <= 8) {
      return lines;
    }
  }
  if (width >= 1900 && width <= 1940) {
    return 1080;
  }
  if (width >= 1270 && width <= 1290) {
    return 720;
  }
  return width >= 3800 && width <= 4100 ? 2160 : height;
}

/// A number of channels as two digits, 51 for 5.1; 0 where it is none.
std::uint8_t channelsOf(int number) {
  return number == 10 || number == 20 || number == 21 || number == 40 || number == 50 ||
                 number == 51 || number == 61 || number == 71
             ? static_cast<std::uint8_t>(number)
             : std::uint8_t{0};
}

bool isTelevision(std::string_view source) {
  return source == "HDTV" || source == "PDTV" || source == "SDTV" || source == "TVRip" ||
         source == "DSR" || source == "DVB" || source == "SATRip";
}

/// 900MB, 2GiB: how large the file is.
bool isSize(std::string_view word) {
  std::size_t i = 0;
  while (i < word.size() && isDigit(word[i])) {
    ++i;
  }
  const std::string_view unit = word.substr(i);
  return i > 0 && (unit == "MB" || unit == "GB" || unit == "mb" || unit == "gb" || unit == "Mb" ||
                   unit == "Gb" || unit == "MiB" || unit == "GiB");
}

/// The number that four digits are; 0 for anything else.
int yearIn(std::string_view text) {
  int year = 0;
  for (const char c : text) {
    if (!isDigit(c)) {
      return 0;
    }
    year = year * 10 + (c - '0');
  }
  return year;
}

bool hasChannels(const Tag* tag) { return tag != nullptr && tag->field == NameField::kAudioCodec; }

bool isNumber(std::string_view word) {
  return word.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Whether a word can begin a tag or be a resolution; some that it lets pass are neither.
bool mayMatch(std::string_view word) {
  if (isDigit(word[0]) || lower(word[0]) == 'r' || (word.size() > 2 && isDigit(word.back()))) {
    return true;
  }
  WordHash hash = WordHash::none();
  for (const char c : word) {
    hash.add(lower(c));
  }
  return mayBeginTag(hash.value);
}

}  // namespace

bool Reader::split(std::size_t i, std::size_t at) {
  if (!tokens_.split(i, at)) {
    return false;
  }
  for (std::size_t k = tokens_.count; k-- > i + 1;) {
    match_[k] = match_[k - 1];
  }
  matchAt(i);
  matchAt(i + 1);
  return true;
}

/// Parts a year and its unit, 2006г, and a title and the word for a special: 灯塔守护者番外篇.
void Reader::splitEnding(std::size_t i) {
  static constexpr std::string_view kYears[] = {"г", "год", "年", "년"};
  static constexpr std::string_view kSpecials[] = {"番外篇", "番外編", "特别篇", "特別篇", "特別編",
                                                   "总集篇", "総集編", "總集篇", "OVA",    "OAD"};
  const std::string_view text = tokens_.text(i);
  const auto endsWith = [text](std::string_view ending) {
    return text.size() > ending.size() && text.substr(text.size() - ending.size()) == ending;
  };
  for (const std::string_view year : kYears) {
    if (text.size() == 4 + year.size() && endsWith(year) && isYear(yearIn(text.substr(0, 4))) &&
        split(i, 4)) {
      take(NameField::kOther, i + 1, i + 2);
      return;
    }
  }
  for (const std::string_view special : kSpecials) {
    if (endsWith(special) && split(i, text.size() - special.size())) {
      return;
    }
  }
}

/// Parts two tags that nothing parts: BD720p, DLx264, 1080p10bit.
void Reader::splitGlued() {
  for (std::size_t i = 0; i < tokens_.count && tokens_.count < Tokens::kMost; ++i) {
    const Token& word = tokens_.token[i];
    if (word.high) {
      splitEnding(i);
      continue;
    }
    const std::size_t size = word.end - word.begin;
    if (!word.anyDigit || word.digits || size < 3 || size > 20 || match_[i]) {
      continue;
    }
    const std::string_view text = tokens_.text(i);
    // 2011CUSTOM
    if (size >= 7 && isYear(yearIn(text.substr(0, 4))) && !isDigit(text[4]) &&
        mayMatch(text.substr(4)) && split(i, 4)) {
      if (match_[i + 1]) {
        continue;
      }
      tokens_.join(i);
      for (std::size_t k = i + 1; k < tokens_.count; ++k) {
        match_[k] = match_[k + 1];
      }
      match_[i] = {};
    }
    for (std::size_t cut = 2; cut < size; ++cut) {
      const bool change = isDigit(text[cut]) != isDigit(text[cut - 1]) ||
                          (lower(text[cut]) == 'x' && cut + 1 < size && isDigit(text[cut + 1])) ||
                          (lower(text[cut - 1]) == 'p' && isDigit(text[cut]));
      if (!change || !mayMatch(text.substr(0, cut)) ||
          !(mayMatch(text.substr(cut)) || isNumber(text.substr(cut))) || !split(i, cut)) {
        continue;
      }
      const Match& left = match_[i];
      const Match& right = match_[i + 1];
      const bool counted =
          left && left.tag != nullptr && tokens_.token[i + 1].digits && size - cut <= 3 &&
          (left.tag->field == NameField::kSeason || left.tag->field == NameField::kEpisode ||
           left.tag->field == NameField::kPart || left.tag->words() == "dvd" ||
           left.tag->words() == "pt");
      if (counted || (size - cut >= 3 && right && left &&
                      (right.tag == nullptr || right.tag->use == TagUse::kEndsTitle))) {
        if (i > 0) {
          matchAt(i - 1);
        }
        break;
      }
      tokens_.join(i);
      for (std::size_t k = i + 1; k < tokens_.count; ++k) {
        match_[k] = match_[k + 1];
      }
      match_[i] = {};
    }
  }
}

void Reader::matchTags() {
  for (std::size_t i = 0; i < tokens_.count; ++i) {
    const Token& word = tokens_.token[i];
    if (word.anyDigit || mayBeginTag(word.hash.value)) {
      matchAt(i);
    } else {
      match_[i] = {};
    }
  }
}

/// Finds the longest tag that begins with a word.
void Reader::matchAt(std::size_t i) {
  constexpr std::uint16_t kJoins = kBlankGap | kDotGap | kUnderscoreGap | kDashGap;
  const Token* const token = tokens_.token;
  Match& best = match_[i];
  best = token[i].anyDigit ? resolutionAt(i) : Match{};
  if (best) {
    return;
  }
  WordHash hash = WordHash::none();
  for (std::size_t n = 1; n <= kMostWords && i + n <= tokens_.count; ++n) {
    const Token& word = token[i + n - 1];
    if (n > 1 && ((word.gap & ~kJoins) != 0 || word.bracket != token[i].bracket)) {
      break;
    }
    const std::string_view bytes = tokens_.text(i, i + n);
    // DDP5.1 and DTS-HD.MA5.1: channels stand at the codec's last word
    const std::string_view last = tokens_.text(i + n - 1);
    if (word.anyDigit && !word.digits && last.size() > 2 && isDigit(last.back())) {
      const std::size_t digits = isDigit(last[last.size() - 2]) ? 2 : 1;
      WordHash stem = hash;
      for (const char c : last.substr(0, last.size() - digits)) {
        stem.add(lower(c));
      }
      const Tag* const tag = tagOfHash(stem.value);
      if (hasChannels(tag) && sameWords(bytes.substr(0, bytes.size() - digits), tag->words())) {
        int number = last.back() - '0';
        std::size_t words = n;
        if (digits == 2) {
          number += (last[last.size() - 2] - '0') * 10;
        } else if (i + n < tokens_.count && token[i + n].digits && token[i + n].number < 10 &&
                   token[i + n].end - token[i + n].begin == 1 &&
                   (token[i + n].gap & ~(kDotGap | kBlankGap | kUnderscoreGap)) == 0) {
          number = number * 10 + token[i + n].number;
          ++words;
        } else {
          number *= 10;
        }
        if (const std::uint8_t channels = channelsOf(number)) {
          best = {tag, static_cast<std::uint8_t>(words), channels, 0};
        }
      }
    }
    hash.add(word.hash);
    if (!mayBeginTag(hash.value)) {
      break;
    }
    const Tag* const tag = tagOfHash(hash.value);
    if (tag != nullptr && sameWords(bytes, tag->words())) {
      best = {tag, static_cast<std::uint8_t>(n), 0, 0};
    }
  }
}

// 1080p, 1080i50, R720p, 1920x1080
Match Reader::resolutionAt(std::size_t i) const {
  const Token* const token = tokens_.token;
  std::string_view text = tokens_.text(i);
  if (!isDigit(text[0]) && lower(text[0]) != 'r') {
    return {};
  }
  if (token[i].digits) {
    const bool by =
        i + 2 < tokens_.count && token[i + 2].digits && token[i].number >= 320 &&
        token[i].number <= 8192 && token[i + 2].number >= 240 && token[i + 2].number <= 4320 &&
        (tokens_.text(i + 1) == "x" || tokens_.text(i + 1) == "X" || tokens_.text(i + 1) == "×");
    return by ? Match{nullptr, 3, 0, linesOf(token[i].number, token[i + 2].number)}  // 1280 x 720
              : Match{};
  }
  if (text.size() < 4 || text.size() > 10) {
    return {};
  }
  if (!isDigit(text[0]) && lower(text[0]) == 'r') {
    text.remove_prefix(1);
  }
  int first = 0;
  std::size_t at = 0;
  while (at < text.size() && isDigit(text[at]) && at < 5) {
    first = first * 10 + (text[at++] - '0');
  }
  if (at < 3 || at > 4 || at == text.size()) {
    return {};
  }
  const bool sign = text.substr(at, 2) == "×";
  const char unit = sign ? 'x' : lower(text[at]);
  int second = 0;
  const std::size_t begin = at + (sign ? 2 : 1);
  std::size_t end = begin;
  while (end < text.size() && isDigit(text[end])) {
    second = second * 10 + (text[end++] - '0');
  }
  if (unit == 'x' && end - begin >= 3 && (end == text.size() || lower(text[end]) == 'p')) {
    return {nullptr, 1, 0, linesOf(first, second)};
  }
  const bool p = unit == 'p' || unit == 'i';
  if (p && (end == text.size() || tokens_.text(i).substr(end) == "fps")) {
    return {nullptr, 1, 0, linesOf(0, first)};
  }
  return {};
}

/// "Ultimate Rekall Edition": free words after the year that end with the word itself.
void Reader::takeEdition() {
  const Token* const t = tokens_.token;
  std::size_t from = titleEnd_;
  while (from < tokens_.count && t[from].taken) {
    ++from;
  }
  for (std::size_t i = from; i < tokens_.count && i < from + 4 && !t[i].taken; ++i) {
    const std::string_view word = tokens_.text(i);
    const bool last = word == "Edition" || word == "EDITION" || word == "Cut" || word == "CUT";
    if (t[i].bracket != t[from].bracket || (endsTitle(i) && !last)) {
      return;
    }
    if (last && i > from && match_[from].words <= i - from) {
      for (std::size_t k = from; k <= i; ++k) {
        (name_.edition += k == from ? "" : " ") += tokens_.text(k);
      }
      take(NameField::kEdition, from, i + 1);
      return;
    }
  }
}

/// Two letters that are a tag elsewhere, where a name without blanks has its group: x264-NL.
bool Reader::isGroupCode(std::size_t i) const {
  const Token* const t = tokens_.token;
  if (i == 0 || i + 1 != tokens_.count || t[i].gap != kDashGap || t[i].bracket != 0 ||
      !t[i].upper || t[i].end - t[i].begin != 2 || !t[i - 1].taken || match_[i].tag == nullptr ||
      match_[i].tag->use != TagUse::kOnlyAfter || (t[1].gap & kDotGap) == 0) {
    return false;
  }
  for (std::size_t k = 1; k < 4 && k <= i; ++k) {
    const Match& before = match_[i - k];
    if (before && before.words == k) {
      return before.tag != nullptr && before.tag->field == NameField::kVideoCodec;
    }
  }
  return false;
}

/// A word before the number of a part. PT is Portuguese where no number follows.
bool Reader::isPartWord(std::size_t i) const {
  if (match_[i].tag == nullptr) {
    return false;
  }
  return match_[i].tag->field == NameField::kPart ||
         (i + 1 < tokens_.count && tokens_.token[i + 1].digits && match_[i].tag->words() == "pt" &&
          tokens_.token[i + 1].number > 0 && tokens_.token[i + 1].number < 20 &&
          (tokens_.token[i + 1].gap & ~(kDotGap | kBlankGap)) == 0);
}

/// "Part 2" after the title: of a film, or of a series in parts that television showed.
bool Reader::takePart(std::size_t i, std::size_t to) {
  const std::size_t next = i + match_[i].words;
  if (next >= to || !isFree(i, next + 1) || name_.part.empty() ||
      tokens_.token[next].bracket != tokens_.token[i].bracket) {
    return false;
  }
  const Token& number = tokens_.token[next];
  if (!number.digits && romanNumber(tokens_.text(next)) == 0) {
    return false;
  }
  bool television = false;
  for (std::size_t k = next + 1; k < to && number.digits; ++k) {
    television = television || (match_[k].tag != nullptr && isTelevision(match_[k].tag->value()));
  }
  if (television && name_.episodes.empty() && name_.airDate.empty()) {
    name_.episodes.push_back(number.number);
    name_.part.clear();
    take(NameField::kEpisode, i, next + 1);
  } else {
    take(NameField::kPart, i, next + 1);
  }
  return true;
}

void Reader::takeTags(std::size_t from, std::size_t to) {
  for (std::size_t i = from; i < to; ++i) {
    if (isPartWord(i) && takePart(i, to)) {
      continue;
    }
    if (match_[i] && isFree(i, i + match_[i].words)) {
      if (isGroupCode(i)) {
        continue;
      }
      takeTag(i);
      i += match_[i].words - 1U;
      // DVD1
      if (i + 1 < to && tokens_.text(i) == "DVD" && tokens_.token[i + 1].digits &&
          tokens_.token[i + 1].begin == tokens_.token[i].end && name_.part.empty()) {
        ++i;
        name_.part = std::to_string(tokens_.token[i].number);
        take(NameField::kPart, i, i + 1);
      }
      continue;
    }
    const Token& word = tokens_.token[i];
    if (!word.taken && word.anyDigit && isSize(tokens_.text(i))) {
      // 4.2GB
      const bool fraction = i > from && tokens_.token[i - 1].digits && word.gap == kDotGap &&
                            !tokens_.token[i - 1].taken;
      take(NameField::kOther, fraction ? i - 1 : i, i + 1);
      continue;
    }
    if (!word.taken && word.digits && name_.resolution.empty() &&
        (word.number == 720 || word.number == 1080 || word.number == 2160) && word.gap != 0) {
      name_.resolution = std::to_string(word.number) + 'p';
      take(NameField::kResolution, i, i + 1);
      continue;
    }
    // 5.1 alone
    if (i + 1 < to && isFree(i, i + 2) && word.digits && word.number < 10 &&
        tokens_.token[i + 1].digits && tokens_.token[i + 1].number < 10 &&
        (tokens_.token[i + 1].gap & ~(kDotGap | kBlankGap)) == 0 &&
        channelsOf(word.number * 10 + tokens_.token[i + 1].number) != 0) {
      name_.audioChannels =
          std::to_string(word.number) + '.' + std::to_string(tokens_.token[i + 1].number);
      take(NameField::kAudioChannels, i, i + 2);
      ++i;
    }
  }
}

namespace {

void addOnce(std::vector<std::string>& list, std::string_view value) {
  for (const std::string& other : list) {
    if (other == value) {
      return;
    }
  }
  list.emplace_back(value);
}

/// How much a source tells; the better one of two stays.
int rankOf(std::string_view source) {
  return source == "TV" || source == "Web" ? 1 : source == "HDRip" || source == "PPV" ? 2 : 3;
}

}  // namespace

void Reader::takeTag(std::size_t i) {
  const Match& match = match_[i];
  const std::size_t end = i + match.words;
  if (match.tag == nullptr) {
    if (name_.resolution.empty() || roughResolution_) {
      (name_.resolution = std::to_string(match.lines)) += 'p';
      roughResolution_ = false;
    }
    take(NameField::kResolution, i, end);
    return;
  }
  const std::string_view value = match.tag->value();
  switch (match.tag->field) {
    case NameField::kResolution:
      if (name_.resolution.empty()) {
        name_.resolution = value;
        roughResolution_ = true;
      }
      break;
    case NameField::kSource:
      isSeries_ = isSeries_ || value == "PPV";
      if (name_.source.empty() || rankOf(value) > rankOf(name_.source)) {
        name_.source = value;
      }
      break;
    case NameField::kVideoCodec:
      if (name_.videoCodec.empty()) {
        name_.videoCodec = value;
      }
      break;
    case NameField::kAudioCodec:
      addOnce(name_.audioCodecs, value);
      if (match.channels != 0 && name_.audioChannels.empty()) {
        name_.audioChannels = {static_cast<char>('0' + match.channels / 10), '.',
                               static_cast<char>('0' + match.channels % 10)};
      }
      break;
    case NameField::kHdr:
      addOnce(name_.hdr, value);
      break;
    case NameField::k3D:
      if (name_.threeD.empty() || name_.threeD == "3D") {
        name_.threeD = value;
      }
      break;
    case NameField::kLanguage:
      addOnce(name_.languages, value);
      break;
    case NameField::kSubtitles:
      addOnce(name_.subtitles, value);
      break;
    case NameField::kEdition:
      if (name_.edition.empty()) {
        name_.edition = value;
      } else {
        (name_.edition += ' ') += value;
      }
      break;
    case NameField::kExtra:
      name_.extra = value;
      break;
    case NameField::kSeason:
    case NameField::kEpisode:
    case NameField::kPart:
      return;  // a word that counts, without a number
    default:
      break;
  }
  take(match.tag->field, i, end);
}

}  // namespace libquilp
