#pragma once

#include <string>
#include <vector>

#include "record/recording.h"

namespace quilp {

/// A lookup, and what it printed.
struct Told {
  Recording recording;
  std::string json;
  int status = 0;
};

/// What became different, a sentence each.
std::vector<std::string> driftOf(const Told& before, const Told& now);

}  // namespace quilp
