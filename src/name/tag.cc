#include "name/tag.h"

#include <array>

#include "name/tag_table.h"

namespace libquilp {
namespace {

constexpr std::size_t kTagCount = sizeof kTags / sizeof kTags[0];
constexpr std::size_t kSlots = 2048;  // a power of two
static_assert(kTagCount < kSlots / 2, "more slots keep the search short");

struct Slot {
  std::uint32_t hash = 0;
  std::uint16_t tag = 0;  // one more than its index
};

constexpr std::uint32_t hashOf(std::string_view words) {
  WordHash hash = WordHash::none();
  for (const char c : words) {
    if (c != ' ') {
      hash.add(c);
    }
  }
  return hash.value;
}

constexpr std::size_t slotOf(std::uint32_t hash) { return (hash ^ (hash >> 15)) & (kSlots - 1); }

constexpr std::array<Slot, kSlots> makeIndex() {
  std::array<Slot, kSlots> index{};
  for (std::size_t i = 0; i < kTagCount; ++i) {
    const std::uint32_t hash = hashOf(kTags[i].words);
    std::size_t slot = slotOf(hash);
    while (index[slot].tag != 0 && index[slot].hash != hash) {
      slot = (slot + 1) & (kSlots - 1);
    }
    if (index[slot].tag == 0) {  // the first of two equal lines counts
      index[slot].hash = hash;
      index[slot].tag = static_cast<std::uint16_t>(i + 1);
    }
  }
  return index;
}

constexpr std::array<Slot, kSlots> kIndex = makeIndex();

constexpr std::size_t kBits = 65536;  // a power of two
constexpr std::size_t bitOf(std::uint32_t hash) { return (hash ^ (hash >> 15)) & (kBits - 1); }

/// A bit for the hash of every beginning of every tag.
constexpr std::array<std::uint32_t, kBits / 32> makeBeginnings() {
  std::array<std::uint32_t, kBits / 32> bits{};
  for (const Tag& tag : kTags) {
    WordHash hash = WordHash::none();
    for (const char c : tag.words) {
      if (c != ' ') {
        hash.add(c);
        bits[bitOf(hash.value) / 32] |= 1U << (bitOf(hash.value) % 32);
      }
    }
  }
  return bits;
}

constexpr std::array<std::uint32_t, kBits / 32> kBeginnings = makeBeginnings();

}  // namespace

bool mayBeginTag(std::uint32_t hash) {
  return (kBeginnings[bitOf(hash) / 32] >> (bitOf(hash) % 32) & 1U) != 0;
}

const Tag* tagOfHash(std::uint32_t hash) {
  for (std::size_t slot = slotOf(hash); kIndex[slot].tag != 0; slot = (slot + 1) & (kSlots - 1)) {
    if (kIndex[slot].hash == hash) {
      return &kTags[kIndex[slot].tag - 1];
    }
  }
  return nullptr;
}

}  // namespace libquilp
