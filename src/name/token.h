#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "name/tag.h"

namespace libquilp {

/// What stands between a word and the one before it.
enum Gap : std::uint16_t {
  kBlankGap = 1,
  kDotGap = 2,
  kUnderscoreGap = 4,
  kDashGap = 8,
  kSpacedDashGap = 16,  // a dash with a separator at both sides
  kSlashGap = 32,
  kBarGap = 64,
  kPlusGap = 128,
  kCommaGap = 256,
  kTildeGap = 512,
  kOtherGap = 1024,
  kBracketGap = 2048,  // a bracket opens or closes
};

/// A word of a name: letters and digits, and what does not part words.
/// No member has an initializer: a name fills few of the tokens that there is room for.
struct Token {
  std::uint32_t begin;
  std::uint32_t end;     // after the last byte
  WordHash hash;         // of its letters and digits, in lower case
  std::uint16_t gap;     // what stands before it
  std::uint8_t bracket;  // index of the innermost one around it; 0 outside
  bool digits;           // nothing else
  bool anyDigit;
  bool high;   // has bytes beyond ASCII
  bool upper;  // has letters, all of them capital
  bool taken;  // some field has it
  int number;  // of digits: the value, at most kMostNumber
};

struct Bracket {
  std::uint32_t begin;  // of the opening sign
  std::uint32_t end;    // after the closing sign
  std::uint8_t parent;
  bool square;  // [ ] and 【 】; not ( ) { }
  bool open;    // never closed
};

inline constexpr int kMostNumber = 99999999;

/// The words and brackets of one file's or folder's name. A name of more words than there is room
/// for ends after them.
struct Tokens {
  static constexpr std::size_t kMost = 192;
  static constexpr std::size_t kMostBrackets = 64;

  explicit Tokens(std::string_view name);

  std::string_view text(std::size_t i) const {
    return {name.data() + token[i].begin, token[i].end - token[i].begin};
  }
  std::string_view text(std::size_t from, std::size_t to) const {
    return {name.data() + token[from].begin, token[to - 1].end - token[from].begin};
  }

  /// Parts a word in two; false where there is no room.
  bool split(std::size_t i, std::size_t at);
  /// Puts the two parts together again.
  void join(std::size_t i);

  /// A bracket around the whole name is none.
  void ignoreOuterBracket();
  /// A bracket that is never closed is none.
  void ignoreOpenBrackets();

  std::string_view name;
  bool high = false;  // has bytes beyond ASCII
  std::size_t count = 0;
  std::size_t brackets = 1;  // the first one stands for "outside"
  Token token[kMost];
  Bracket bracket[kMostBrackets];
};

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool isLetter(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

}  // namespace libquilp
