#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace quilp::catalogue {

/// Where an import stands.
struct Progress {
  const char* stage = "";
  std::uint64_t rows = 0;  // of titles so far
  double fraction = 0;     // of the whole
};

/// Is told now and then, by the thread that imports.
using OnProgress = std::function<void(const Progress&)>;

}  // namespace quilp::catalogue
