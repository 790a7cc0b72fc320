#include "music/records.h"

// The layouts cross the library's border.
static_assert(sizeof(velAlbum_) == 4 * sizeof(char*), "velAlbum_ has changed");
static_assert(sizeof(velThumb_) == sizeof(char*), "velThumb_ has changed");

void velFreeAlbums(velAlbum_* albums, int count) {
  libquilp::freeRecords(libquilp::kAlbumFields, albums, count);
}

void velFreeThumbs(velThumb_* thumbs, int count) {
  libquilp::freeRecords(libquilp::kThumbFields, thumbs, count);
}
