#pragma once

#include <optional>
#include <string>

#include "libquilp.h"
#include "plugin/observer.h"
#include "plugin/records.h"

namespace libquilp {

/// Fetches the metadata service's identifier of an artist; no value if the service does not know
/// the artist or is overloaded.
std::optional<std::string> fetchArtistIdentifier(const char* artist, const Context& context);

/// The built-in album search; a non-empty artist narrows it. The caller's result for a `count`
/// below 1 is that count.
Found<velAlbum_> searchAlbums(const char* album, const char* artist, int count,
                              const Context& context);

/// The built-in list of an artist's albums. An artwork document that cannot be parsed ends it: the
/// caller's result is 0, although the array holds the records filled so far.
Found<velAlbum_> listAlbums(const char* artist, int count, const Context& context);

}  // namespace libquilp
