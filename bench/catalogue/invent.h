#pragma once

#include <cstdint>
#include <string>

// Invented words, titles and names, the same on every machine: whole numbers only, and no two
// random numbers in one expression, whose order a compiler may choose.

namespace invent {

/// SplitMix64.
class Random {
 public:
  /// The numbers of one thing of one kind: they depend on nothing else.
  Random(std::uint64_t seed, std::uint64_t kind, std::uint64_t number);

  std::uint64_t next();
  std::uint32_t below(std::uint32_t limit) {
    return static_cast<std::uint32_t>((next() >> 32) * limit >> 32);
  }
  bool once(std::uint32_t in) { return below(in) == 0; }

  /// From 0 to limit - 1; the n-th has the chance 1/n, about, as words of a language have.
  std::uint32_t zipf(std::uint32_t limit);

 private:
  std::uint64_t state_;
};

template <class List>
auto one(const List& list, Random& random) {
  return list[random.below(static_cast<std::uint32_t>(list.size()))];
}

/// The n-th word: small numbers are short words.
std::string word(std::uint32_t n);
std::string capital(std::string word);

/// A title such as "The Drouf of Maisel: Kentry".
std::string title(Random& random);

/// The title of another script, of the people of a region.
std::string foreignTitle(Random& random, const std::string& region);

std::string person(Random& random);

}  // namespace invent
