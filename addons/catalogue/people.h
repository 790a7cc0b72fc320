#pragma once

#include <cstdint>
#include <vector>

namespace quilp::catalogue {

/// The people that some title names. Each gets a number without gaps, in the order of identifiers.
class People {
 public:
  static constexpr std::uint32_t kMost = 200'000'000;  // an eighth of it in bytes, at most

  void add(std::uint32_t id) {
    const std::size_t word = id / 64;
    if (word >= bits_.size()) {
      bits_.resize(word + word / 2 + 1);
    }
    bits_[word] |= std::uint64_t{1} << id % 64;
  }

  /// Ends adding.
  void number() {
    before_.resize(bits_.size());
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < bits_.size(); ++i) {
      before_[i] = count;
      count += static_cast<std::uint32_t>(__builtin_popcountll(bits_[i]));
    }
    count_ = count;
  }

  bool has(std::uint32_t id) const {
    return id / 64 < bits_.size() && (bits_[id / 64] >> id % 64 & 1) != 0;
  }
  std::uint32_t numberOf(std::uint32_t id) const {
    const std::uint64_t below = bits_[id / 64] & ((std::uint64_t{1} << id % 64) - 1);
    return before_[id / 64] + static_cast<std::uint32_t>(__builtin_popcountll(below));
  }
  std::uint32_t count() const { return count_; }

 private:
  std::vector<std::uint64_t> bits_;
  std::vector<std::uint32_t> before_;
  std::uint32_t count_ = 0;
};

}  // namespace quilp::catalogue
