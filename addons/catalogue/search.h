#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store.h"
#include "title.h"

namespace quilp::catalogue {

struct Query {
  std::string words{};         // as the user wrote them
  unsigned year = 0;           // 0 for any
  std::optional<Kind> kind{};  // none for any
  std::size_t count = 10;
};

struct Hit {
  std::uint32_t rank = 0;
  double score = 0;       // to compare hits of one search
  double similarity = 0;  // 1: the same
  std::string name{};     // normalised, of the title's names the one that fits best
};

/// The titles that fit best, the best one first. Finds titles with letters wrong, words missing or
/// in another order. Throws Damaged.
std::vector<Hit> search(Store& store, const Query& query);

/// The titles of hits, in their order.
std::vector<Title> titlesOf(Store& store, const std::vector<Hit>& hits);

}  // namespace quilp::catalogue
