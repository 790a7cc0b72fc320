#pragma once

#include <cstddef>
#include <string_view>

#include "name/name.h"

namespace libquilp {

/// What is known of a file's or folder's name before it is read.
struct Surroundings {
  NameKind hint = NameKind::kUnknown;
  bool inSeasonFolder = false;
  bool inFolder = false;
  bool isFolder = false;   // no extension
  std::size_t offset = 0;  // of its first byte in the path
};

/// Reads one part of a path.
Name readComponent(std::string_view text, const Surroundings& surroundings);

}  // namespace libquilp
