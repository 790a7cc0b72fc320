#pragma once

#include <string>
#include <string_view>

namespace libquilp {

/// The file's name of a path; " / " stands between title and artist.
std::string_view songFileOf(std::string_view path);

/// The extension in lower case; empty when it is none of a song's.
std::string songContainerOf(std::string_view name);

}  // namespace libquilp
