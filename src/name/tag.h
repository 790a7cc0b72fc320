#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "name/name.h"

namespace libquilp {

/// Where a tag counts as one.
enum class TagUse : std::uint8_t {
  kEndsTitle,   // no title has it: what follows is no title any more
  kMayBeTitle,  // a word of many titles: a tag after the title, or where the title meets other tags
  kOnlyAfter,   // too short or too common: a tag only after the title
};

/// A hash of letters and digits without regard to case, which can be extended word by word.
struct WordHash {
  std::uint32_t value;
  std::uint32_t factor;

  static constexpr WordHash none() { return {0, 1}; }

  constexpr void add(char c) {
    value = value * kBase + static_cast<unsigned char>(c);
    factor *= kBase;
  }
  constexpr void add(const WordHash& word) {
    value = value * word.factor + word.value;
    factor *= word.factor;
  }

  static constexpr std::uint32_t kBase = 0x01000193;
};

/// A word that release names use for a value of a field. Its texts are told by their places, so
/// that a thousand tags are small and need no work when the program is loaded.
struct Tag {
  std::uint32_t hash;
  std::uint16_t wordsAt;
  std::uint16_t valueAt;
  std::uint8_t wordsSize;
  std::uint8_t valueSize;
  NameField field;
  TagUse use;

  std::string_view words() const;  // lower case; at a blank a name may have any separator or none
  std::string_view value() const;
};

constexpr std::uint32_t mixed(std::uint32_t hash) { return hash ^ (hash >> 15); }

/// A bit for the hash of every beginning of every tag.
inline constexpr std::size_t kBeginningBits = 65536;  // a power of two
extern const std::array<std::uint32_t, kBeginningBits / 32> kTagBeginnings;

/// Whether a tag may begin with the letters of a hash. A few wrong hits cost a look at more words.
inline bool mayBeginTag(std::uint32_t hash) {
  const std::size_t bit = mixed(hash) % kBeginningBits;
  return (kTagBeginnings[bit / 32] >> (bit % 32) & 1U) != 0;
}

/// The tag of a hash; null for none. The caller compares the letters.
const Tag* tagOfHash(std::uint32_t hash);

}  // namespace libquilp
