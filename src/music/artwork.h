#pragma once

#include <optional>
#include <string>

#include "libquilp.h"

namespace libquilp {

/// Which pictures of an album will do.
enum class CoverKind { kFront, kFrontOrDisc };

/// Address of an album's cover; empty when the service has none, and none when its answer cannot be
/// parsed. An empty identifier is not asked for.
std::optional<std::string> coverOf(const std::string& id, CoverKind kind);

/// Lists the backgrounds that the service has for an artist.
int mbfGetArtistThumbnail(const char* artist, int count, velThumb_** thumbs);

}  // namespace libquilp
