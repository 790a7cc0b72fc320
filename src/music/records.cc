#include "music/records.h"

#include "plugin/records.h"

// The record layouts are part of the binary interface.
static_assert(sizeof(velAlbum_) == 4 * sizeof(char*), "velAlbum_ has changed");
static_assert(sizeof(velThumb_) == sizeof(char*), "velThumb_ has changed");

void velFreeAlbums(velAlbum_* albums, int count) {
  libquilp::freeRecords<velAlbum_>(libquilp::kAlbumFields, albums, count);
}

void velFreeThumbs(velThumb_* thumbs, int count) {
  libquilp::freeRecords<velThumb_>(libquilp::kThumbFields, thumbs, count);
}
