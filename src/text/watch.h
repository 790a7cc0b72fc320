#pragma once

#include <string_view>

namespace libquilp {

/// Told of each marker that a Cutter looks for. Does nothing; a program may link its own instead.
void markerSought(std::string_view marker, bool found);

}  // namespace libquilp
