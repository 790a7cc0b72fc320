#include "name/tag.h"

#include <array>

#include "name/tag_table.h"

namespace libquilp {
namespace {

constexpr std::size_t kTagCount = sizeof kTagLines / sizeof kTagLines[0];

constexpr std::uint32_t hashOf(std::string_view words) {
  WordHash hash = WordHash::none();
  for (const char c : words) {
    if (c != ' ') {
      hash.add(c);
    }
  }
  return hash.value;
}

/// Lines of one value mostly follow each other, and share it.
constexpr bool sharesValue(std::size_t i) {
  return i > 0 && kTagLines[i - 1].value == kTagLines[i].value;
}

constexpr std::size_t textSize() {
  std::size_t size = 0;
  for (std::size_t i = 0; i < kTagCount; ++i) {
    size += kTagLines[i].words.size() + (sharesValue(i) ? 0 : kTagLines[i].value.size());
  }
  return size;
}

struct Table {
  std::array<Tag, kTagCount> tags{};
  std::array<char, textSize()> text{};
};

constexpr Table makeTable() {
  Table table{};
  std::size_t at = 0;
  for (std::size_t i = 0; i < kTagCount; ++i) {
    const TagLine& line = kTagLines[i];
    Tag& tag = table.tags[i];
    tag.hash = hashOf(line.words);
    tag.field = line.field;
    tag.use = line.use;
    tag.wordsAt = static_cast<std::uint16_t>(at);
    tag.wordsSize = static_cast<std::uint8_t>(line.words.size());
    for (const char c : line.words) {
      table.text[at++] = c;
    }
    tag.valueSize = static_cast<std::uint8_t>(line.value.size());
    if (sharesValue(i)) {
      tag.valueAt = table.tags[i - 1].valueAt;
      continue;
    }
    tag.valueAt = static_cast<std::uint16_t>(at);
    for (const char c : line.value) {
      table.text[at++] = c;
    }
  }
  return table;
}

constexpr Table kTable = makeTable();
static_assert(textSize() < 65536, "places in the text have 16 bits");

constexpr std::size_t kSlots = 4096;  // a power of two
static_assert(kTagCount < kSlots / 2, "more slots keep the search short");

/// One more than a tag's number where its hash leads; 0: none.
constexpr std::array<std::uint16_t, kSlots> makeIndex() {
  std::array<std::uint16_t, kSlots> index{};
  for (std::size_t i = 0; i < kTagCount; ++i) {
    const std::uint32_t hash = kTable.tags[i].hash;
    std::size_t slot = mixed(hash) % kSlots;
    while (index[slot] != 0 && kTable.tags[index[slot] - 1U].hash != hash) {
      slot = (slot + 1) % kSlots;
    }
    if (index[slot] == 0) {  // the first of two equal lines counts
      index[slot] = static_cast<std::uint16_t>(i + 1);
    }
  }
  return index;
}

constexpr std::array<std::uint16_t, kSlots> kIndex = makeIndex();

constexpr std::array<std::uint32_t, kBeginningBits / 32> makeBeginnings() {
  std::array<std::uint32_t, kBeginningBits / 32> bits{};
  for (const TagLine& line : kTagLines) {
    WordHash hash = WordHash::none();
    for (std::size_t i = 0; i < line.words.size(); ++i) {
      if (line.words[i] != ' ') {
        hash.add(line.words[i]);
      }
      const std::size_t bit = mixed(hash.value) % kBeginningBits;
      bits[bit / 32] |= 1U << (bit % 32);
    }
  }
  return bits;
}

}  // namespace

constexpr std::array<std::uint32_t, kBeginningBits / 32> kTagBeginnings = makeBeginnings();

std::string_view Tag::words() const { return {kTable.text.data() + wordsAt, wordsSize}; }

std::string_view Tag::value() const { return {kTable.text.data() + valueAt, valueSize}; }

const Tag* tagOfHash(std::uint32_t hash) {
  for (std::size_t slot = mixed(hash) % kSlots; kIndex[slot] != 0; slot = (slot + 1) % kSlots) {
    const Tag& tag = kTable.tags[kIndex[slot] - 1U];
    if (tag.hash == hash) {
      return &tag;
    }
  }
  return nullptr;
}

}  // namespace libquilp
