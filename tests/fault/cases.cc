#include "cases.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "libquilp.h"

namespace {

template <class Record, class Call>
auto search(void (*release)(Record*, int), Call call) {
  return [=] {
    Record* records = nullptr;
    int n = 0;
    try {
      n = call(&records);
    } catch (...) {
      release(records, 0);
      throw;
    }
    release(records, n);
    return n;
  };
}

/// The records of an abandoned listing: up to the first without an image.
void releaseListing(velAlbum_* albums, int n) {
  if (n == 0 && albums != nullptr) {
    while (albums[n++].image != nullptr) {
    }
  }
  velFreeAlbums(albums, n);
}

template <class Record>
struct Details : Record {
  explicit Details(void (*release)(Record*)) : Record(), release_(release) {}
  ~Details() { release_(this); }
  Details(const Details&) = delete;
  Details& operator=(const Details&) = delete;

 private:
  void (*release_)(Record*);
};

template <class Record, class Call>
auto details(void (*release)(Record*), Call call) {
  return [=] {
    Details<Record> record(release);
    return call(&record);
  };
}

/// Standard output is a file. Whatever is there must be whole, and nothing after a failure.
template <class Call>
auto print(Call call) {
  return [=] {
    const int result = call();
    std::fflush(stdout);
    const off_t size = lseek(STDOUT_FILENO, 0, SEEK_END);
    char end[3] = {};
    const bool whole =
        size == 0 || (pread(STDOUT_FILENO, end, 2, size - 2) == 2 &&
                      (std::strcmp(end, ">\n") == 0 || std::strcmp(end, "\n\n") == 0));
    const bool emptied = ftruncate(STDOUT_FILENO, 0) == 0 && lseek(STDOUT_FILENO, 0, SEEK_SET) == 0;
    return emptied && whole && (result == 0 || size == 0) ? result : kNeverRight;
  };
}

template <class Call>
auto karaoke(Call call) {
  return [=] {
    KTV_ExtraData_t info = {};
    return call(&info);
  };
}

const unsigned char* bytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}

template <class Record>
void freeArray(void (*release)(Record*, int)) {
  release(static_cast<Record*>(std::calloc(1, sizeof(Record))), 1);
}

template <class Record>
void freeTexts(void (*release)(Record*)) {
  Details<Record> record(release);
  record.title = strdup("title");
}

int freeAll() {
  freeArray(velFreeMovies);
  freeArray(velFreeTVShows);
  freeArray(velFreeAlbums);
  freeArray(velFreeThumbs);
  freeTexts(velFreeMovieInfo);
  freeTexts(velFreeTVShowInfo);
  freeTexts(velFreeTVEpisode);
  return 0;
}

int changeText() {
  static std::string text;
  text = "  a text&nbsp;with &#x26;#33; and &#33;\r\n ";
  replace_string(&removeEmptyChar(text));
  static char room[256] = "&amp; &#33; &none; a b";
  decode_html_entities_utf8(room, nullptr);
  StringConvert2PercentString(text.data(), 3, room, 200);
  KTV_ExtraData_t info = {};
  initKTVInfo(&info);
  return to_hex('a') + libquilp::to_hex('a') - 'a' - 'a' == 0 && char2hex('a') == 10 &&
                 libquilp::from_hex('a') == 10
             ? 0
             : kNeverRight;
}

int codeAddress() {
  char text[] = "a b%20c&d+'";
  std::free(libquilp::url_encode(text));
  std::free(libquilp::url_decode(text));
  return 0;
}

int askLanguage() {
  static char shell[] = "/any/addon.sh";
  const char* language = nullptr;
  getDefaultLang(&language, shell);
  return std::strlen(language) < 4 ? 0 : kNeverRight;
}

constexpr char kMovie[] = "paper.lighthouse.S01E02";  // no blanks: it can stay as it is
constexpr char kShow[] = "signal.row.S01E02";
constexpr char kMovieId[] = "tt9000001";
constexpr char kShowId[] = "tt8000001";
constexpr char kArtist[] = "tin harbour";
constexpr char kSong[] =
    "Ann Lee, the first singer[F]&Bo[M]_A title that is long enough to be allocated[Eng][R].mpg";

}  // namespace

// Without an add-on in a registry that cannot be read, a lookup takes its other route: that route's
// results are failures, too.
std::vector<FaultCase> faultCases() {
  return {
      {"velSearchMovie",
       "Movie",
       {0, 1},
       search(velFreeMovies,
              [](auto movies) {
                int error = 0;
                return velSearchMovie(kMovie, 2, movies, &error);
              })},
      {"velPrintSearchMovie", "Movie", {0, 1, 2}, print([] {
         return velPrintSearchMovie(kMovie, 2);
       })},
      {"velGetMovieByID",
       "Movie",
       {-1, 1, 2},
       details(velFreeMovieInfo, [](auto info) { return velGetMovieByID(kMovieId, info); })},
      {"velPrintMovieByID", "Movie", {1}, print([] { return velPrintMovieByID(kMovieId); })},
      {"imdbBasicGetMovies",
       "",
       {0, 1},
       search(velFreeMovies,
              [](auto movies) { return imdbBasicGetMovies("everything", 5, movies); })},
      {"imdbGetMovies",
       "",
       {0},
       search(velFreeMovies, [](auto movies) { return imdbGetMovies("lighthouse", 2, movies); })},
      {"imdbGetMovieInfo",
       "",
       {-1, 1},
       details(velFreeMovieInfo, [](auto info) { return imdbGetMovieInfo(kMovieId, info); })},

      {"velSearchTVShows",
       "TV",
       {0, 1},
       search(velFreeTVShows,
              [](auto shows) {
                int error = 0;
                return velSearchTVShows(kShow, 2, nullptr, shows, &error);
              })},
      {"velPrintSearchTVShows", "TV", {0, 1, 2}, print([] {
         return velPrintSearchTVShows(kShow, 2, "en");
       })},
      {"velGetTVShowByID",
       "TV",
       {1, 2},
       details(velFreeTVShowInfo,
               [](auto info) { return velGetTVShowByID(kShowId, nullptr, info); })},
      {"velPrintTVShowByID", "TV", {1, 2}, print([] { return velPrintTVShowByID(kShowId, "en"); })},
      {"velGetTVEpisode",
       "TV",
       {-1, 1, 2},
       details(velFreeTVEpisode,
               [](auto info) { return velGetTVEpisode(kShowId, 2, 1, nullptr, info); })},
      {"velPrintTVEpisode", "TV", {-1, 1, 2}, print([] {
         return velPrintTVEpisode(kShowId, 2, 1, "en");
       })},

      {"velSearchAlbum",
       "Music",
       {0, 1},
       search(velFreeAlbums,
              [](auto albums) { return velSearchAlbum("salt & rope", kArtist, 2, albums); })},
      {"velGetAlbumByArtist",
       "Music",
       {0, 1},
       search(releaseListing, [](auto albums) { return velGetAlbumByArtist(kArtist, 2, albums); })},
      {"velGetArtistThumbnail",
       "Music",
       {0, 2},
       search(velFreeThumbs,
              [](auto thumbs) { return velGetArtistThumbnail(kArtist, 2, thumbs); })},
      {"velPrintSearchAlbum", "Music", {1}, print([] {
         return velPrintSearchAlbum("salt & rope", kArtist, 2);
       })},
      {"velPrintGetAlbumByArtist", "Music", {1}, print([] {
         return velPrintGetAlbumByArtist(kArtist, 2);
       })},
      {"velPrintGetArtistThumbnail", "Music", {1}, print([] {
         return velPrintGetArtistThumbnail(kArtist, 2);
       })},

      {"velGetKTVInfo", "KTV", {1}, karaoke([](auto info) { return velGetKTVInfo(kSong, info); })},
      {"BasicGetKTVInfo", "", {1}, karaoke([](auto info) { return BasicGetKTVInfo(kSong, info); })},
      {"parseTitleAndLangAndVocal", "", {1}, karaoke([](auto info) {
         return parseTitleAndLangAndVocal(bytes(kSong), info);
       })},
      {"parseArtist", "", {1}, karaoke([](auto info) { return parseArtist(bytes(kSong), info); })},

      {"ProcessKeyword",
       "",
       {kOutOfMemory},
       [] {
         return ProcessKeyword("[x] A.Film.With.A.Long.Name.S01E02.2011.1080p", 1).empty() ? 1 : 0;
       }},
      {"getDefaultLang", "", {}, askLanguage},
      {"libquilp::url_encode(char*) libquilp::url_decode(char*)", "", {}, codeAddress},
      {"velFreeMovies velFreeTVShows velFreeAlbums velFreeThumbs velFreeMovieInfo "
       "velFreeTVShowInfo "
       "velFreeTVEpisode",
       "",
       {},
       freeAll},
      {"replace_string removeEmptyChar decode_html_entities_utf8 StringConvert2PercentString "
       "to_hex "
       "char2hex libquilp::to_hex(char) libquilp::from_hex(char) initKTVInfo",
       "",
       {},
       changeText},
  };
}
