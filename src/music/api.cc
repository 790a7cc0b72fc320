#include <new>

#include "libquilp.h"
#include "music/artwork.h"
#include "music/metadata.h"
#include "music/records.h"
#include "plugin/result_document.h"
#include "plugin/shell_call.h"

// The print functions take any add-on of the type, the others only one of the library's class.

namespace libquilp {
namespace {

int runSearchAlbum(ShellCall& shell, const char* album, const char* artist, int count) {
  return shell.run({"searchAlbum", "-b", album, "-a", artist, "-n", Decimal(count)});
}

int runGetAlbumByArtist(ShellCall& shell, const char* artist, int count) {
  return shell.run({"getAlbumByArtist", "-a", artist, "-n", Decimal(count)});
}

int runGetArtistThumbnail(ShellCall& shell, const char* artist, int count) {
  return shell.run({"getArtistThumbnail", "-a", artist, "-n", Decimal(count)});
}

/// Copies the add-on's document as it is, unless the add-on failed.
int printDocumentOf(const ShellCall& shell, int status) {
  return status != 0 ? 1 : PrintFile(shell.file());
}

template <std::size_t N>
int readAlbums(const ShellCall& shell, const Field<velAlbum_> (&table)[N], velAlbum_** albums) {
  const XMLNode list = shell.document("albumlist");
  return list ? readRecords(list, "album", table, &velFreeAlbums, albums) : 0;
}

template <std::size_t N>
int printAlbums(const Field<velAlbum_> (&table)[N], const velAlbum_* albums, int n) {
  if (n < 1) {
    return 1;
  }
  ResultDocument document("albumlist");
  for (int i = 0; i < n; ++i) {
    XMLNode entry = document.addEntry("album", i);
    writeRecord(entry, table, albums[i]);
  }
  document.print();
  return 0;
}

}  // namespace
}  // namespace libquilp

int velSearchAlbum(const char* album, const char* artist, int count, velAlbum_** albums) try {
  using namespace libquilp;
  album = orEmpty(album);
  artist = orEmpty(artist);
  ShellCall shell("Music");
  if (!shell.found()) {
    return mbfSearchAlbum(album, artist, count, albums);
  }
  const int status = runSearchAlbum(shell, album, artist, count);
  return status == 0 ? readAlbums(shell, kAlbumFields, albums) : 0;
} catch (const std::bad_alloc&) {
  return 0;
}

int velPrintSearchAlbum(const char* album, const char* artist, int count) try {
  using namespace libquilp;
  album = orEmpty(album);
  artist = orEmpty(artist);
  ShellCall shell("Music", GetFirstEnabledShellByType);
  if (shell.found()) {
    return printDocumentOf(shell, runSearchAlbum(shell, album, artist, count));
  }
  velAlbum_* albums = nullptr;
  const int n = mbfSearchAlbum(album, artist, count, &albums);
  const RecordArray<velAlbum_> owned(&velFreeAlbums, albums, n);
  return printAlbums(kPrintedAlbumFields, albums, n);
} catch (const std::bad_alloc&) {
  return 1;
}

int velGetAlbumByArtist(const char* artist, int count, velAlbum_** albums) try {
  using namespace libquilp;
  artist = orEmpty(artist);
  ShellCall shell("Music");
  if (!shell.found()) {
    return mbfGetAlbumByArtist(artist, count, albums);
  }
  const int status = runGetAlbumByArtist(shell, artist, count);
  return status == 0 ? readAlbums(shell, kArtistAlbumFields, albums) : 0;
} catch (const std::bad_alloc&) {
  return 0;
}

int velPrintGetAlbumByArtist(const char* artist, int count) try {
  using namespace libquilp;
  artist = orEmpty(artist);
  ShellCall shell("Music", GetFirstEnabledShellByType);
  if (shell.found()) {
    return printDocumentOf(shell, runGetAlbumByArtist(shell, artist, count));
  }
  velAlbum_* albums = nullptr;
  const AlbumListing listing = listAlbums(artist, count, &albums);
  const RecordArray<velAlbum_> owned(&velFreeAlbums, albums, listing.filled);
  return printAlbums(kArtistAlbumFields, albums, listing.found);
} catch (const std::bad_alloc&) {
  return 1;
}

int velGetArtistThumbnail(const char* artist, int count, velThumb_** thumbs) try {
  using namespace libquilp;
  artist = orEmpty(artist);
  ShellCall shell("Music");
  if (!shell.found()) {
    return mbfGetArtistThumbnail(artist, count, thumbs);
  }
  if (runGetArtistThumbnail(shell, artist, count) != 0) {
    return 0;
  }
  const XMLNode list = shell.document("artistthumbnail");
  return list ? readRecords(list, "url", &velFreeThumbs, thumbs,
                            [](const XMLNode& url, velThumb_& thumb) {
                              thumb.url = SafeStrdup(firstClear(url));
                            })
              : 0;
} catch (const std::bad_alloc&) {
  return 0;
}

int velPrintGetArtistThumbnail(const char* artist, int count) try {
  using namespace libquilp;
  artist = orEmpty(artist);
  ShellCall shell("Music", GetFirstEnabledShellByType);
  if (shell.found()) {
    return printDocumentOf(shell, runGetArtistThumbnail(shell, artist, count));
  }
  velThumb_* thumbs = nullptr;
  const int n = mbfGetArtistThumbnail(artist, count, &thumbs);
  const RecordArray<velThumb_> owned(&velFreeThumbs, thumbs, n);
  if (n < 1) {
    return 1;
  }
  ResultDocument document("artistthumbnail");
  for (int i = 0; i < n; ++i) {
    writeRecord(document.root(), kThumbFields, thumbs[i]);
  }
  document.print();
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}
