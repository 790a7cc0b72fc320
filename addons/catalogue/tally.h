#pragma once

#include <cstdint>
#include <utility>
#include <vector>

namespace quilp::catalogue {

/// Adds up what the words of a query say for each name. A word that a name has in several readings
/// counts once, as the best of them. One flat table: common words have tens of thousands of names.
class Tally {
 public:
  Tally() : slots_(kFirstSlots) {}

  void startWord() { ++word_; }
  void add(std::uint32_t name, float weight) {
    Slot* slot = &find(name);
    if (slot->word == 0) {
      if (names_ > kMostNames && word_ > 1) {
        return;
      }
      if (++names_ * 2 > slots_.size()) {
        grow();
        slot = &find(name);
      }
      slot->name = name;
    }
    if (slot->word != word_) {
      slot->word = word_;
      slot->ofWord = 0;
    }
    if (weight > slot->ofWord) {
      slot->sum += weight - slot->ofWord;
      slot->ofWord = weight;
    }
  }

  /// Pairs of weight and name, in no order.
  std::vector<std::pair<float, std::uint32_t>> all() const {
    std::vector<std::pair<float, std::uint32_t>> pairs;
    pairs.reserve(names_);
    for (const Slot& slot : slots_) {
      if (slot.word != 0) {
        pairs.emplace_back(slot.sum, slot.name);
      }
    }
    return pairs;
  }

 private:
  static constexpr std::size_t kFirstSlots = 4096;  // a power of two, as all sizes
  static constexpr std::size_t kMostNames = 20000;  // then a second word brings no others

  struct Slot {
    std::uint32_t name = 0;
    std::uint32_t word = 0;  // 0: free
    float sum = 0;
    float ofWord = 0;
  };

  Slot& find(std::uint32_t name) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = name * 0x9e3779b1U >> 7 & mask;
    while (slots_[at].word != 0 && slots_[at].name != name) {
      at = (at + 1) & mask;
    }
    return slots_[at];
  }
  void grow() {
    std::vector<Slot> before(slots_.size() * 2);
    before.swap(slots_);
    for (const Slot& slot : before) {
      if (slot.word != 0) {
        find(slot.name) = slot;
      }
    }
  }

  std::vector<Slot> slots_;
  std::size_t names_ = 0;
  std::uint32_t word_ = 0;
};

}  // namespace quilp::catalogue
