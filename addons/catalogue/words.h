#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store.h"

namespace quilp::catalogue {

/// A word of the vocabulary that a word of a query may mean.
struct Reading {
  std::uint32_t number = 0;
  std::uint32_t names = 0;  // how many have it
  unsigned wrong = 0;       // letters
};

/// Looks words up in the vocabulary of a catalogue.
class Vocabulary {
 public:
  explicit Vocabulary(Store& store);

  /// The word itself, where there is such a word.
  std::vector<Reading> known(std::string_view word);

  /// Words with a letter wrong; of longer words with two, where there is none with one.
  std::vector<Reading> corrected(std::string_view word);

  /// The best known words that begin with it.
  std::vector<Reading> begun(std::string_view word);

 private:
  void lookUp(const std::vector<std::string>& texts, std::vector<std::uint32_t>& numbers);
  void check(std::string_view word, std::vector<std::uint32_t>& numbers, unsigned limit,
             std::vector<Reading>& readings);

  Tables& tables_;
  std::uint64_t buckets_;
};

}  // namespace quilp::catalogue
