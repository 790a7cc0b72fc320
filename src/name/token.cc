#include "name/token.h"

#include <array>
#include <cstring>

#include "name/counter.h"

namespace libquilp {
namespace {

/// A sign that parts words.
struct Sign {
  std::uint16_t gap = 0;  // 0: a byte of a word
  std::uint8_t size = 1;
  char bracket = 0;  // '(' or ')' of any kind, and '[' or ']' of the square ones
};

/// The signs beyond ASCII: brackets, dashes and wide punctuation.
Sign wideSignAt(std::string_view text) {
  struct Wide {
    std::string_view sign;
    std::uint16_t gap;
    char bracket;
  };
  static constexpr Wide kWide[] = {
      {"【", kBracketGap, '['},   {"】", kBracketGap, ']'},
      {"［", kBracketGap, '['},   {"］", kBracketGap, ']'},
      {"（", kBracketGap, '('},   {"）", kBracketGap, ')'},
      {"「", kBracketGap, '('},   {"」", kBracketGap, ')'},
      {"『", kBracketGap, '('},   {"』", kBracketGap, ')'},
      {"《", kBracketGap, '['},   {"》", kBracketGap, ']'},
      {"〈", kBracketGap, '('},   {"〉", kBracketGap, ')'},
      {"〔", kBracketGap, '('},   {"〕", kBracketGap, ')'},
      {"★", kOtherGap, 0},        {"☆", 0, 0},
      {"、", kCommaGap, 0},       {"，", kCommaGap, 0},
      {"　", kBlankGap, 0},       {"：", 0, 0},
      {"｜", kBarGap, 0},         {"／", kSlashGap, 0},
      {"＋", kPlusGap, 0},        {"＆", 0, 0},
      {"～", kTildeGap, 0},       {"〜", kTildeGap, 0},
      {"–", kDashGap, 0},         {"—", kDashGap, 0},
      {"•", kOtherGap, 0},        {"…", kDotGap, 0},
      {"\xC2\xA0", kBlankGap, 0},
  };
  for (const Wide& wide : kWide) {
    if (text.substr(0, wide.sign.size()) == wide.sign) {
      return {wide.gap, static_cast<std::uint8_t>(wide.sign.size()), wide.bracket};
    }
  }
  return {};
}

constexpr Sign asciiSign(char c) {
  switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\n':
      return {kBlankGap};
    case '.':
      return {kDotGap};
    case '_':
      return {kUnderscoreGap};
    case '-':
      return {kDashGap};
    case '/':
    case '\\':
      return {kSlashGap};
    case '|':
      return {kBarGap};
    case '+':
      return {kPlusGap};
    case ',':
      return {kCommaGap};
    case '~':
      return {kTildeGap};
    case '(':
    case '{':
      return {kBracketGap, 1, '('};
    case ')':
    case '}':
      return {kBracketGap, 1, ')'};
    case '[':
      return {kBracketGap, 1, '['};
    case ']':
      return {kBracketGap, 1, ']'};
    case ';':
    case ':':
    case '*':
    case '?':
    case '!':
    case '"':
    case '=':
    case '<':
    case '>':
    case '^':
    case '`':
    case '#':
      return {kOtherGap};
    default:
      break;
  }
  return static_cast<unsigned char>(c) < ' ' ? Sign{kOtherGap} : Sign();
}

constexpr std::array<Sign, 256> makeSigns() {
  std::array<Sign, 256> signs{};
  for (std::size_t i = 0; i < 128; ++i) {
    signs[i] = asciiSign(static_cast<char>(i));
  }
  return signs;
}

constexpr std::array<Sign, 256> kSigns = makeSigns();

Sign signAt(std::string_view name, std::size_t i) {
  const auto byte = static_cast<unsigned char>(name[i]);
  return byte == 0xE3 || byte == 0xE2 || byte == 0xEF || byte == 0xC2 ? wideSignAt(name.substr(i))
                                                                      : kSigns[byte];
}

/// What a byte is in a word.
enum : std::uint8_t { kDigit = 1, kCapital = 2, kSmall = 4, kHigh = 8, kOther = 16, kParts = 32 };

struct Byte {
  std::uint8_t kind = 0;
  std::uint8_t hashed = 0;  // in lower case; 0: does not count, as in "Clockmaker's"
};

constexpr std::array<Byte, 256> makeBytes() {
  std::array<Byte, 256> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = static_cast<char>(i);
    bytes[i].hashed = static_cast<std::uint8_t>(c == '\'' ? 0 : i < 128 ? lower(c) : c);
    bytes[i].kind = i >= 128               ? kHigh
                    : kSigns[i].gap != 0   ? kParts
                    : isDigit(c)           ? kDigit
                    : c >= 'A' && c <= 'Z' ? kCapital
                    : c >= 'a' && c <= 'z' ? kSmall
                                           : kOther;
  }
  return bytes;
}

constexpr std::array<Byte, 256> kBytes = makeBytes();

bool isAscii(std::string_view text) {
  std::uint64_t bits = 0;
  std::size_t i = 0;
  for (; i + sizeof bits <= text.size(); i += sizeof bits) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data() + i, sizeof eight);
    bits |= eight;
  }
  for (; i < text.size(); ++i) {
    bits |= static_cast<unsigned char>(text[i]);
  }
  return (bits & 0x8080808080808080U) == 0;
}

int numberOf(std::string_view digits) {
  if (digits.size() > 8) {
    return kMostNumber;
  }
  int number = 0;
  for (const char c : digits) {
    number = number * 10 + (c - '0');
  }
  return number;
}

constexpr std::uint16_t kSeparators = kBlankGap | kUnderscoreGap | kDotGap;

/// Follows the brackets while the name is read.
class Nesting {
 public:
  explicit Nesting(Tokens& tokens) : tokens_(tokens) {}

  std::uint8_t current() const { return current_; }

  void open(std::size_t begin, bool square) {
    if (tokens_.brackets < Tokens::kMostBrackets) {
      tokens_.bracket[tokens_.brackets] = {static_cast<std::uint32_t>(begin),
                                           static_cast<std::uint32_t>(tokens_.name.size()),
                                           current_, square, true};
      current_ = static_cast<std::uint8_t>(tokens_.brackets++);
    }
  }

  /// Closes the innermost bracket of the kind, and those inside it that were never closed.
  void close(std::size_t end, bool square) {
    std::uint8_t i = current_;
    while (i != 0 && tokens_.bracket[i].square != square) {
      i = tokens_.bracket[i].parent;
    }
    if (i != 0) {
      tokens_.bracket[i].end = static_cast<std::uint32_t>(end);
      tokens_.bracket[i].open = false;
      current_ = tokens_.bracket[i].parent;
    }
  }

 private:
  Tokens& tokens_;
  std::uint8_t current_ = 0;
};

}  // namespace

Tokens::Tokens(std::string_view text) : name(text) {
  bracket[0] = {0, static_cast<std::uint32_t>(name.size()), 0, false, false};
  Nesting nesting(*this);
  high = !isAscii(name);  // Every counter has a unit beyond ASCII.
  // Bytes of a word that need no second look. Where no counter can follow, a digit is one, too.
  const int plain = high ? kCapital | kSmall : kCapital | kSmall | kDigit;
  const char* const bytes = name.data();
  const std::size_t size = name.size();
  std::uint16_t gap = 0;
  std::size_t i = 0;
  while (i < size && count < kMost) {
    const Sign sign = high ? signAt(name, i) : kSigns[static_cast<unsigned char>(bytes[i])];
    if (sign.gap != 0) {
      if (sign.gap == kDashGap && (gap & kSeparators) != 0 && i + sign.size < size &&
          (signAt(name, i + sign.size).gap & kSeparators) != 0) {
        gap |= kSpacedDashGap;
      }
      gap |= sign.gap;
      if (sign.bracket == '(' || sign.bracket == '[') {
        nesting.open(i, sign.bracket == '[');
      } else if (sign.bracket != 0) {
        nesting.close(i + sign.size, sign.bracket == ']');
      }
      i += sign.size;
      continue;
    }
    const std::size_t begin = i;
    WordHash hash = WordHash::none();
    unsigned kinds = 0;
    // A counter such as 第2季 is a word of its own, also where nothing parts it from others.
    const std::size_t counter = high ? counterAt(name, i).size : 0;
    if (counter != 0) {
      for (const std::size_t end = i + counter; i < end; ++i) {
        hash.add(name[i]);
      }
      kinds = kHigh;
    }
    while (i < size && counter == 0) {
      const Byte byte = kBytes[static_cast<unsigned char>(bytes[i])];
      if ((byte.kind & plain) != 0) {
        hash.add(static_cast<char>(byte.hashed));
        kinds |= byte.kind;
        ++i;
        continue;
      }
      if (byte.kind == kParts || (high && (byte.kind & (kHigh | kDigit)) != 0 && i > begin &&
                                  counterAt(name, i).size != 0)) {
        break;
      }
      if (byte.kind == kHigh) {
        const Sign next = signAt(name, i);
        if (next.gap != 0) {
          break;
        }
        for (const std::size_t end = i + next.size; i < end; ++i) {
          hash.add(name[i]);
        }
        kinds |= kHigh;
        continue;
      }
      if (byte.hashed != 0) {
        hash.add(static_cast<char>(byte.hashed));
      }
      kinds |= byte.kind;
      ++i;
    }
    token[count++] = {static_cast<std::uint32_t>(begin),
                      static_cast<std::uint32_t>(i),
                      hash,
                      gap,
                      nesting.current(),
                      kinds == kDigit,
                      (kinds & kDigit) != 0,
                      (kinds & kHigh) != 0,
                      (kinds & (kCapital | kSmall)) == kCapital,
                      false,
                      kinds == kDigit ? numberOf(name.substr(begin, i - begin)) : 0};
    gap = 0;
  }
  if (brackets > 1) {
    ignoreOpenBrackets();
    ignoreOuterBracket();
  }
}

bool Tokens::split(std::size_t i, std::size_t at) {
  if (count == kMost) {
    return false;
  }
  for (std::size_t k = count++; k > i + 1; --k) {
    token[k] = token[k - 1];
  }
  const Token whole = token[i];
  token[i + 1] = whole;
  token[i].end = token[i + 1].begin = whole.begin + static_cast<std::uint32_t>(at);
  token[i + 1].gap = kDotGap;
  for (Token* const part : {&token[i], &token[i + 1]}) {
    part->hash = WordHash::none();
    part->digits = true;
    part->number = 0;
    for (const char c : name.substr(part->begin, part->end - part->begin)) {
      part->hash.add(lower(c));
      part->digits = part->digits && isDigit(c);
      part->number =
          isDigit(c) && part->number < kMostNumber / 10 ? part->number * 10 + (c - '0') : 0;
    }
  }
  return true;
}

void Tokens::join(std::size_t i) {
  token[i].end = token[i + 1].end;
  token[i].digits = false;
  token[i].number = 0;
  token[i].hash.add(token[i + 1].hash);
  --count;
  for (std::size_t k = i + 1; k < count; ++k) {
    token[k] = token[k + 1];
  }
}

void Tokens::ignoreOuterBracket() {
  const std::size_t first = name.find_first_not_of(' ');
  const std::size_t last = name.find_last_not_of(' ');
  if (bracket[1].begin != first || bracket[1].end != last + 1) {
    return;
  }
  for (std::size_t b = 2; b < brackets; ++b) {
    bracket[b].parent = bracket[b].parent == 1 ? std::uint8_t{0} : bracket[b].parent;
  }
  for (std::size_t i = 0; i < count; ++i) {
    token[i].bracket = token[i].bracket == 1 ? std::uint8_t{0} : token[i].bracket;
  }
}

void Tokens::ignoreOpenBrackets() {
  for (std::size_t b = 1; b < brackets; ++b) {
    const std::uint8_t parent = bracket[b].parent;
    if (bracket[parent].open) {
      bracket[b].parent = bracket[parent].parent;  // whose own parent is closed by now
    }
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (bracket[token[i].bracket].open) {
      token[i].bracket = bracket[token[i].bracket].parent;
    }
  }
}

}  // namespace libquilp
