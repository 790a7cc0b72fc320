#pragma once

#include <string>
#include <vector>

#include "check/clauses.h"

namespace quilp {

/// What a file may be called, and so what an add-on may be asked.
struct Hostile {
  Clause clause;
  std::vector<std::string> values;
};

/// What a value names that makes a shell run a part of it.
inline constexpr const char* kInjected = "injected";

const std::vector<Hostile>& hostileValues();

/// The value of "hostile-dash", which is an unknown one to an add-on that takes it for a value.
inline constexpr const char* kDash = "hostile-dash";

}  // namespace quilp
