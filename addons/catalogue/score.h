#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "layout.h"

namespace quilp::catalogue {

/// A normalised query, prepared for many comparisons.
class Similarity {
 public:
  explicit Similarity(std::string_view query);
  Similarity(const Similarity&) = delete;  // its words are views of its texts
  Similarity& operator=(const Similarity&) = delete;

  /// 1 for the same, about .9 for one letter wrong, 0 for nothing in common.
  double to(std::string_view name) const;

 private:
  std::string query_;
  std::string sorted_;
  std::vector<std::string_view> words_;
  std::string_view number_;  // that the query ends in; empty for none
};

/// Optimal string alignment: letters inserted, deleted, replaced, or swapped with their neighbour.
/// Gives up beyond limit, with any number above it.
unsigned distance(std::string_view a, std::string_view b, unsigned limit);

/// What a hit is worth: similarity first, then how known it is and how the year fits.
struct Fit {
  double similarity = 0;
  unsigned votesLog = 0;
  Source source = Source::kTitle;
  int yearGap = -1;  // years between; -1 where one is unknown
};
double scoreOf(const Fit& fit);

}  // namespace quilp::catalogue
