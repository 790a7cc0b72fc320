#include "normalise.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace quilp::catalogue {
namespace {

struct Numeral {
  std::string_view word;
  std::string_view digits;
};
constexpr std::array kNumerals = {
    Numeral{"ii", "2"},   Numeral{"iii", "3"},   Numeral{"iv", "4"},    Numeral{"v", "5"},
    Numeral{"vi", "6"},   Numeral{"vii", "7"},   Numeral{"viii", "8"},  Numeral{"ix", "9"},
    Numeral{"x", "10"},   Numeral{"xi", "11"},   Numeral{"xii", "12"},  Numeral{"xiii", "13"},
    Numeral{"two", "2"},  Numeral{"three", "3"}, Numeral{"four", "4"},  Numeral{"five", "5"},
    Numeral{"six", "6"},  Numeral{"seven", "7"}, Numeral{"eight", "8"}, Numeral{"nine", "9"},
    Numeral{"ten", "10"},
};

constexpr std::array<std::string_view, 19> kArticles = {
    "the", "a",   "an", "le",  "la",  "les", "l'", "un", "une", "der",
    "die", "das", "el", "los", "las", "il",  "lo", "de", "het"};

/// The word itself where it is no numeral.
std::string_view inDigits(std::string_view word) {
  const auto* numeral = std::find_if(kNumerals.begin(), kNumerals.end(),
                                     [&](const Numeral& each) { return each.word == word; });
  return numeral == kNumerals.end() ? word : numeral->digits;
}

/// Letters that have no decomposition.
std::string_view plainLetter(std::int32_t c) {
  switch (c) {
    case 0xdf:
      return "ss";
    case 0xe6:
      return "ae";
    case 0x153:
      return "oe";
    case 0xf8:
      return "o";
    case 0x142:
      return "l";
    case 0x111:
    case 0xf0:
      return "d";
    case 0xfe:
      return "th";
    case 0x131:
      return "i";
    default:
      return {};
  }
}

bool isApostrophe(std::int32_t c) {
  return c == '\'' || c == '`' || c == 0xb4 || c == 0x2018 || c == 0x2019 || c == 0x2bc ||
         c == 0x60c;
}

/// Scripts that are written without blanks, and Korean, whose blanks vary.
bool isPaired(std::int32_t c) {
  return (c >= 0x3040 && c <= 0x30ff) || (c >= 0x3400 && c <= 0x9fff) ||
         (c >= 0xac00 && c <= 0xd7a3) || (c >= 0xf900 && c <= 0xfaff) ||
         (c >= 0x20000 && c <= 0x3ffff);
}

bool isWordCharacter(std::int32_t c) {
  switch (utf8proc_category(c)) {
    case UTF8PROC_CATEGORY_LU:
    case UTF8PROC_CATEGORY_LL:
    case UTF8PROC_CATEGORY_LT:
    case UTF8PROC_CATEGORY_LM:
    case UTF8PROC_CATEGORY_LO:
    case UTF8PROC_CATEGORY_MC:
    case UTF8PROC_CATEGORY_ND:
    case UTF8PROC_CATEGORY_NL:
    case UTF8PROC_CATEGORY_NO:
      return true;
    default:
      return false;
  }
}

/// Puts words together.
class Line {
 public:
  explicit Line(std::size_t room) { text_.reserve(room + 8); }

  void letter(char c) {
    startWord(false);
    text_ += c;
  }
  void letters(std::string_view text) {
    startWord(false);
    text_ += text;
  }
  void character(std::int32_t c) {
    startWord(isPaired(c));
    std::array<utf8proc_uint8_t, 4> bytes{};
    const auto size = utf8proc_encode_char(c, bytes.data());
    text_.append(reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(size));
  }
  void gap() { endWord(); }
  void andWord() {
    endWord();
    letters("and");
    endWord();
  }
  std::string take() {
    endWord();
    if (!text_.empty() && text_.back() == ' ') {
      text_.pop_back();
    }
    return std::move(text_);
  }

 private:
  void startWord(bool paired) {
    if (inWord_ && paired != paired_) {
      endWord();
    }
    paired_ = paired;
    inWord_ = true;
  }
  void endWord() {
    if (!inWord_) {
      return;
    }
    if (word_ > 0) {
      const std::string_view last = std::string_view(text_).substr(word_);
      const std::string_view digits = last.size() <= 5 ? inDigits(last) : last;
      if (digits != last) {
        text_.replace(word_, std::string::npos, digits);
      }
    }
    text_ += ' ';
    word_ = text_.size();
    inWord_ = false;
  }

  std::string text_;
  std::size_t word_ = 0;  // where the last word starts
  bool inWord_ = false;
  bool paired_ = false;
};

void addAscii(Line& line, unsigned char c) {
  if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
    line.letter(static_cast<char>(c));
  } else if (c >= 'A' && c <= 'Z') {
    line.letter(static_cast<char>(c | 0x20));
  } else if (c == '&' || c == '+') {
    line.andWord();
  } else if (!isApostrophe(c)) {
    line.gap();
  }
}

void addOther(Line& line, std::int32_t c) {
  if (isApostrophe(c)) {
    return;
  }
  if (c >= 0xac00 && c <= 0xd7a3) {
    line.character(c);  // a syllable is a character here, not two or three letters
    return;
  }
  std::array<utf8proc_int32_t, 32> parts{};
  int boundary = 0;
  const auto count = utf8proc_decompose_char(
      c, parts.data(), static_cast<utf8proc_ssize_t>(parts.size()),
      static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_COMPAT | UTF8PROC_CASEFOLD |
                                     UTF8PROC_STRIPMARK),
      &boundary);
  for (utf8proc_ssize_t i = 0; i < count && i < static_cast<utf8proc_ssize_t>(parts.size()); ++i) {
    const std::int32_t part = parts[static_cast<std::size_t>(i)];
    const std::string_view plain = plainLetter(part);
    if (part < 0x80) {
      addAscii(line, static_cast<unsigned char>(part));
    } else if (!plain.empty()) {
      line.letters(plain);
    } else if (isWordCharacter(part)) {
      line.character(part);
    } else {
      line.gap();
    }
  }
}

void addText(Line& line, std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte < 0x80) {
      addAscii(line, byte);
      ++i;
      continue;
    }
    utf8proc_int32_t c = 0;
    const auto size = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()) + i,
                                       static_cast<utf8proc_ssize_t>(text.size() - i), &c);
    if (size <= 0) {
      line.gap();  // a byte that is not UTF-8
      ++i;
      continue;
    }
    addOther(line, c);
    i += static_cast<std::size_t>(size);
  }
}

/// Where ", The" starts at the end of a title, or npos.
std::size_t movedArticle(std::string_view title) {
  const std::size_t comma = title.rfind(", ");
  if (comma == std::string_view::npos || comma == 0 || title.size() - comma > 6) {
    return std::string_view::npos;
  }
  std::string word(title.substr(comma + 2));
  for (char& c : word) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  }
  const bool known = std::find(kArticles.begin(), kArticles.end(), word) != kArticles.end();
  return known ? comma : std::string_view::npos;
}

std::size_t sizeOfCharacter(char first) {
  const auto byte = static_cast<unsigned char>(first);
  return byte < 0x80 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
}

bool startsPaired(std::string_view word) {
  utf8proc_int32_t c = 0;
  return static_cast<unsigned char>(word[0]) >= 0xe3 &&
         utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(word.data()),
                          static_cast<utf8proc_ssize_t>(word.size()), &c) > 0 &&
         isPaired(c);
}

void addPairs(std::string_view word, std::vector<std::string_view>& words) {
  std::size_t start = 0;
  std::size_t middle = sizeOfCharacter(word[0]);
  if (middle >= word.size()) {
    words.push_back(word);
    return;
  }
  while (middle < word.size()) {
    const std::size_t end = std::min(middle + sizeOfCharacter(word[middle]), word.size());
    words.push_back(word.substr(start, end - start));
    start = middle;
    middle = end;
  }
}

}  // namespace

std::string normalise(std::string_view title) {
  Line line(title.size());
  const std::size_t moved = movedArticle(title);
  if (moved != std::string_view::npos) {
    addText(line, title.substr(moved + 2));
    line.gap();
    title = title.substr(0, moved);
  }
  addText(line, title);
  return line.take();
}

std::vector<std::string_view> wordsOf(std::string_view normalised) {
  std::vector<std::string_view> words;
  while (!normalised.empty()) {
    const std::size_t end = std::min(normalised.find(' '), normalised.size());
    const std::string_view word = normalised.substr(0, end);
    if (!word.empty()) {
      if (startsPaired(word)) {
        addPairs(word, words);
      } else {
        words.push_back(word);
      }
    }
    normalised.remove_prefix(std::min(end + 1, normalised.size()));
  }
  return words;
}

std::string sortedWords(std::string_view normalised) {
  std::vector<std::string_view> words = wordsOf(normalised);
  if (!words.empty()) {
    words[0] = inDigits(words[0]);
  }
  std::sort(words.begin(), words.end());
  std::string line;
  line.reserve(normalised.size() + 1);
  for (const std::string_view word : words) {
    line.append(line.empty() ? "" : " ").append(word);
  }
  return line;
}

}  // namespace quilp::catalogue
