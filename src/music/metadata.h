#pragma once

#include <optional>
#include <string>

#include "libquilp.h"
#include "plugin/observer.h"
#include "plugin/records.h"

namespace libquilp {

/// Fetches the metadata service's identifier of an artist; none when it knows no such artist or is
/// overloaded.
std::optional<std::string> fetchArtistIdentifier(const char* artist, const Context& context);

/// The built-in album search; an artist that is not empty narrows it. A caller is told a `count`
/// below 1 as it is.
Found<velAlbum_> searchAlbums(const char* album, const char* artist, int count,
                              const Context& context);

/// The built-in listing of an artist's albums. An artwork document that cannot be parsed ends it: a
/// caller is told 0, although the array holds the records filled up to there.
Found<velAlbum_> listAlbums(const char* artist, int count, const Context& context);

}  // namespace libquilp
