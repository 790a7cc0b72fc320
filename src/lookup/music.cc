#include "lookup/requests.h"
#include "music/artwork.h"
#include "music/metadata.h"
#include "music/records.h"

namespace libquilp {
namespace {

constexpr Option kAlbumOptions[] = {
    {"-b", Value::kAlbum}, {"-a", Value::kArtist}, {"-n", Value::kCount}};
constexpr Option kArtistOptions[] = {{"-a", Value::kArtist}, {"-n", Value::kCount}};

template <class Record>
std::vector<Element> noElements(const Request& /*request*/) {
  return {};
}

template <class Record>
int print(const ListRequest<Record>& request, const Values& values) {
  return writeOut(request.print(request, values, Context())) ? 0 : 1;
}

}  // namespace

constexpr ListRequest<velAlbum_> kAlbumSearch = {
    {"music search", kMusicMedia, "searchAlbum", kAlbumOptions, "albumlist", "album", false, false,
     &listElements<velAlbum_>, &printList<velAlbum_>},
    kAlbumFields,
    kPrintedAlbumFields,
    nullptr,
    &velFreeAlbums,
    [](const Values& values, const Context& context) {
      return searchAlbums(values.album, values.artist, values.count, context);
    }};

constexpr ListRequest<velAlbum_> kArtistAlbums = {
    {"music albums", kMusicMedia, "getAlbumByArtist", kArtistOptions, "albumlist", "album", false,
     false, &listElements<velAlbum_>, &printList<velAlbum_>},
    kArtistAlbumFields,
    kArtistAlbumFields,
    nullptr,
    &velFreeAlbums,
    [](const Values& values, const Context& context) {
      return listAlbums(values.artist, values.count, context);
    }};

constexpr ListRequest<velThumb_> kArtistPictures = {
    {"music art", kMusicMedia, "getArtistThumbnail", kArtistOptions, "artistthumbnail", "url",
     false, false, &noElements<velThumb_>, &printList<velThumb_>},
    {},
    kThumbFields,
    &velThumb_::url,
    &velFreeThumbs,
    [](const Values& values, const Context& context) {
      return fetchPictures(values.artist, values.count, context);
    }};

}  // namespace libquilp

using namespace libquilp;

int velSearchAlbum(const char* album, const char* artist, int count, velAlbum_** albums) {
  return search(kAlbumSearch, Values::ofAlbum(album, artist, count), albums);
}

int velPrintSearchAlbum(const char* album, const char* artist, int count) {
  return print(kAlbumSearch, Values::ofAlbum(album, artist, count));
}

int velGetAlbumByArtist(const char* artist, int count, velAlbum_** albums) {
  return search(kArtistAlbums, Values::ofArtist(artist, count), albums);
}

int velPrintGetAlbumByArtist(const char* artist, int count) {
  return print(kArtistAlbums, Values::ofArtist(artist, count));
}

int velGetArtistThumbnail(const char* artist, int count, velThumb_** thumbs) {
  return search(kArtistPictures, Values::ofArtist(artist, count), thumbs);
}

int velPrintGetArtistThumbnail(const char* artist, int count) {
  return print(kArtistPictures, Values::ofArtist(artist, count));
}
