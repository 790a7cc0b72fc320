#pragma once

namespace libquilp {

/// Where a file of the platform is read: `path` itself. A program may link its own placeOf()
/// instead of this one, to read another file in its place.
const char* placeOf(const char* path);

}  // namespace libquilp
