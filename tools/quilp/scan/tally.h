#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

#include "scan/row.h"

namespace quilp {

/// Counts the rows of a scan.
class Tally {
 public:
  void add(const ScanRow& row);

  std::size_t matched() const { return sure_ + unsure_; }
  std::size_t failures() const { return failures_; }

  /// "120/5000, 310 a second, 16 s left".
  std::string progress(std::size_t all) const;

  /// "5000 files: 4810 sure, 130 unsure, 60 unknown (nothing of that title was found: 60)".
  std::string summary(std::size_t extras) const;

 private:
  std::size_t done_ = 0;
  std::size_t sure_ = 0;
  std::size_t unsure_ = 0;
  std::size_t unknown_ = 0;
  std::size_t failures_ = 0;
  std::map<std::string, std::size_t> causes_;  // of unknown files
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace quilp
