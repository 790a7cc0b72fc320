#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "layout.h"
#include "tables.h"

namespace quilp::catalogue {

/// The key of a row of the table "start": the letters as a number.
inline std::uint64_t startKey(std::string_view start) {
  std::uint64_t key = 0;
  for (std::size_t i = 0; i < kLongestStart; ++i) {
    key = key << 8 | (i < start.size() ? static_cast<unsigned char>(start[i]) : 0U);
  }
  return key;
}

/// Collects, for each start that many words share, the best known of them.
class Starts {
 public:
  /// The words in their order.
  void add(std::string_view text, const Word& word);

  /// Ends adding. Gives keys and values, in the order of keys.
  std::vector<std::pair<std::uint64_t, std::string>> rows();

 private:
  struct Start {
    std::string text{};
    std::uint64_t count = 0;
    std::vector<Word> best{};
  };
  void close(Start& start);

  std::array<Start, kLongestStart + 1> open_{};  // by length
  std::vector<std::pair<std::uint64_t, std::string>> rows_;
};

}  // namespace quilp::catalogue
