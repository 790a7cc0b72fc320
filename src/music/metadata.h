#pragma once

#include <optional>
#include <string>

#include "libquilp.h"

namespace libquilp {

/// The metadata service's identifier of an artist; none when it knows no such artist or is busy.
std::optional<std::string> artistIdentifier(const char* artist);

/// Finds albums by title; an artist that is not empty narrows the search. Returns the number of
/// records, and a `count` below 1 as it is.
int mbfSearchAlbum(const char* album, const char* artist, int count, velAlbum_** albums);

/// What listing an artist's albums gives.
struct AlbumListing {
  int found;   // the caller's result
  int filled;  // records that hold strings: more than `found` where the listing was abandoned
};
AlbumListing listAlbums(const char* artist, int count, velAlbum_** albums);

/// Lists the albums of an artist. An artwork document that cannot be parsed ends the listing with
/// 0, although the array is stored and filled up to there.
int mbfGetAlbumByArtist(const char* artist, int count, velAlbum_** albums);

}  // namespace libquilp
