#pragma once

#include <cstddef>
#include <string_view>

namespace libquilp {

/// A number with its unit, as Chinese, Japanese and Korean names write them: 第2季, 第十二话, 3화.
struct Counter {
  enum class Unit { kNone, kSeason, kEpisode, kPart, kTotal };

  std::size_t size = 0;  // in bytes; 0: none
  Unit unit = Unit::kNone;
  int first = 0;
  int last = 0;  // of a range
};

/// The counter that starts at a byte of the name.
Counter counterAt(std::string_view name, std::size_t at);

}  // namespace libquilp
