#pragma once

#include <cstddef>
#include <string_view>

#include "name/name.h"

namespace libquilp {

/// The last parts of a path.
struct PathParts {
  static constexpr std::size_t kMost = 5;

  std::size_t offset(std::size_t i) const {
    return static_cast<std::size_t>(part[i].data() - begin);
  }

  std::string_view part[kMost];
  std::size_t count = 0;  // at least 1
  const char* begin = nullptr;
};

/// Splits a path. A slash inside a name, as in "Ranma 1/2" or "Title / Other Title", parts nothing.
PathParts partsOf(std::string_view path);

/// "Season 2", "S02", "Specials": a folder inside a show's folder.
bool isSeasonFolder(std::string_view folder);

/// A folder whose name tells nothing: "Movies", "VIDEO_TS", "CD1".
bool isGenericFolder(std::string_view folder);

/// A title that is no title: a number, a disc's file, letters at random.
bool isWeakTitle(const Name& name);

}  // namespace libquilp
