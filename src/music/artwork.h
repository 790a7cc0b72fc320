#pragma once

#include <optional>
#include <string>

#include "libquilp.h"

namespace libquilp {

/// Which pictures of an album will do.
enum class CoverKind { kFront, kFrontOrDisc };

/// Address of an album's cover; empty when the service has none, and none when its answer cannot be
/// parsed. Without an identifier (null) nothing is asked for.
std::optional<std::string> coverOf(const char* id, CoverKind kind);

/// Lists the backgrounds that the service has for an artist.
int mbfGetArtistThumbnail(const char* artist, int count, velThumb_** thumbs);

}  // namespace libquilp
