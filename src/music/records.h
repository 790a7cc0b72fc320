#pragma once

#include "libquilp.h"
#include "plugin/record_table.h"

namespace libquilp {

/// An add-on's album search.
inline constexpr Field<velAlbum_> kAlbumFields[] = {
    required(textField("name", &velAlbum_::name)),
    textField("artist", &velAlbum_::artist),
    textField("releasedate", &velAlbum_::releasedate),
    textField("image", &velAlbum_::image),
};

/// The printed album search.
inline constexpr Field<velAlbum_> kPrintedAlbumFields[] = {
    textField("artist", &velAlbum_::artist),
    textField("name", &velAlbum_::name),
    textField("releasedate", &velAlbum_::releasedate),
    textField("image", &velAlbum_::image),
};

/// The albums of one artist; the artist's name is neither read nor printed.
inline constexpr Field<velAlbum_> kArtistAlbumFields[] = {
    required(textField("name", &velAlbum_::name)),
    textField("releasedate", &velAlbum_::releasedate),
    textField("image", &velAlbum_::image),
};

inline constexpr Field<velThumb_> kThumbFields[] = {
    textField("url", &velThumb_::url),
};

}  // namespace libquilp
