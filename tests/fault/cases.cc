#include "cases.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

#include "libquilp.h"
#include "support.h"

FaultWindow faultWindow;

namespace {

using std::string;

string addOn;

/// Its result; an exception is one, too.
template <class Call>
int inWindow(Call call) {
  int result = 0;
  faultWindow.open();
  try {
    result = call();
  } catch (const std::bad_alloc&) {
    result = kOutOfMemory;
  } catch (const std::exception&) {
    result = kOtherException;
  }
  faultWindow.close();
  return result;
}

template <class Record>
void touch(const Record& record) {
  const char* texts[sizeof(Record) / sizeof(char*)];
  std::memcpy(texts, &record, sizeof record);
  for (const char* text : texts) {
    if (text != nullptr && std::strlen(text) > 1000000) {
      std::abort();
    }
  }
}

template <class Record, class Call>
auto search(void (*release)(Record*, int), Call call) {
  return [=] {
    Record* records = nullptr;
    const int n = inWindow([&] { return call(&records); });
    for (int i = 0; i < n; ++i) {
      touch(records[i]);
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

template <class Record, class Call>
auto details(void (*release)(Record*), Call call) {
  return [=] {
    Record record = Record();
    const int result = inWindow([&] { return call(&record); });
    release(&record);
    return result;
  };
}

/// Standard output is a file.
template <class Call>
auto print(Call call) {
  return [=] {
    const int result = inWindow(call);
    std::fflush(stdout);
    char end[2] = {'\n', '\n'};
    const off_t size = lseek(STDOUT_FILENO, 0, SEEK_END);
    const bool whole = size == 0 || (pread(STDOUT_FILENO, end, 2, size - 2) == 2 &&
                                     (end[0] == '>' || end[0] == '\n') && end[1] == '\n');
    const bool quiet = ftruncate(STDOUT_FILENO, 0) == 0 && (result == 0 || size == 0);
    lseek(STDOUT_FILENO, 0, SEEK_SET);
    return whole && quiet ? result : kTornOutput;
  };
}

template <class Call>
auto karaoke(Call call) {
  return [=] {
    KTV_ExtraData_t info = {};
    return inWindow([&] { return call(&info); });
  };
}

/// For what gives no status: 0.
template <class Call>
auto plain(Call call) {
  return [=] {
    return inWindow([&] {
      call();
      return 0;
    });
  };
}

const unsigned char* bytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}

using Cases = std::vector<FaultCase>;

/// A lookup takes the other route when the registry cannot be read.
void addLookup(Cases& cases, const char* function, const std::vector<int>& failures,
               const std::function<int()>& call) {
  for (const char* route : {"add-on", "built-in"}) {
    cases.push_back({function, route, call, failures});
  }
}

void addMovies(Cases& cases) {
  const char* const id = "tt9000001";
  addLookup(cases, "velSearchMovie", {0, 1}, search(velFreeMovies, [](velMovie_** movies) {
              int error = 0;
              return velSearchMovie("The.Paper.Lighthouse.2011.S01E02.1080p", 2, movies, &error);
            }));
  addLookup(cases, "velPrintSearchMovie", {0, 1, 2},
            print([] { return velPrintSearchMovie("paper lighthouse", 2); }));
  addLookup(
      cases, "velGetMovieByID", {-1, 0, 1, 2},
      details(velFreeMovieInfo, [=](velMovieInfo_* info) { return velGetMovieByID(id, info); }));
  addLookup(cases, "velPrintMovieByID", {1}, print([=] { return velPrintMovieByID(id); }));
  const std::vector<FaultCase> more = {
      {"imdbBasicGetMovies",
       "",
       search(velFreeMovies,
              [](velMovie_** movies) { return imdbBasicGetMovies("everything", 5, movies); }),
       {0, 1}},
      {"imdbGetMovies",
       "",
       search(velFreeMovies,
              [](velMovie_** movies) { return imdbGetMovies("lighthouse", 2, movies); }),
       {0}},
      {"imdbGetMovieInfo",
       "",
       details(velFreeMovieInfo, [=](velMovieInfo_* info) { return imdbGetMovieInfo(id, info); }),
       {-1, 1}}};
  cases.insert(cases.end(), more.begin(), more.end());
}

void addTV(Cases& cases) {
  const char* const id = "tt8000001";
  addLookup(cases, "velSearchTVShows", {0, 1}, search(velFreeTVShows, [](velTVShow** shows) {
              int error = 0;
              return velSearchTVShows("signal row", 2, nullptr, shows, &error);
            }));
  addLookup(cases, "velPrintSearchTVShows", {0, 1, 2},
            print([] { return velPrintSearchTVShows("signal row", 2, "en"); }));
  addLookup(cases, "velGetTVShowByID", {1, 2}, details(velFreeTVShowInfo, [=](velTVShowInfo* info) {
              return velGetTVShowByID(id, nullptr, info);
            }));
  addLookup(cases, "velPrintTVShowByID", {1, 2},
            print([=] { return velPrintTVShowByID(id, "en"); }));
  addLookup(cases, "velGetTVEpisode", {-1, 1, 2},
            details(velFreeTVEpisode,
                    [=](velTVEpisode* info) { return velGetTVEpisode(id, 2, 1, nullptr, info); }));
  addLookup(cases, "velPrintTVEpisode", {-1, 1, 2},
            print([=] { return velPrintTVEpisode(id, 2, 1, "en"); }));
}

void addMusic(Cases& cases) {
  addLookup(cases, "velSearchAlbum", {0, 1}, search(velFreeAlbums, [](velAlbum_** albums) {
              return velSearchAlbum("salt & rope", "tin harbour", 2, albums);
            }));
  addLookup(cases, "velGetAlbumByArtist", {0, 1}, search(releaseListing, [](velAlbum_** albums) {
              return velGetAlbumByArtist("tin harbour", 2, albums);
            }));
  addLookup(cases, "velGetArtistThumbnail", {0, 2}, search(velFreeThumbs, [](velThumb_** thumbs) {
              return velGetArtistThumbnail("tin harbour", 2, thumbs);
            }));
  addLookup(cases, "velPrintSearchAlbum", {1},
            print([] { return velPrintSearchAlbum("salt & rope", "tin harbour", 2); }));
  addLookup(cases, "velPrintGetAlbumByArtist", {1},
            print([] { return velPrintGetAlbumByArtist("tin harbour", 2); }));
  addLookup(cases, "velPrintGetArtistThumbnail", {1},
            print([] { return velPrintGetArtistThumbnail("tin harbour", 2); }));
}

void addKaraoke(Cases& cases) {
  const char* const name =
      "Ann Lee[F]&Bo Wu[M]_A title that is long enough to be allocated[Eng][R].mpg";
  addLookup(cases, "velGetKTVInfo", {1},
            karaoke([=](KTV_ExtraData_t* info) { return velGetKTVInfo(name, info); }));
  const std::vector<FaultCase> more = {
      {"BasicGetKTVInfo",
       "",
       karaoke([=](KTV_ExtraData_t* info) { return BasicGetKTVInfo(name, info); }),
       {1}},
      {"parseTitleAndLangAndVocal",
       "",
       karaoke([=](KTV_ExtraData_t* info) {
         return parseTitleAndLangAndVocal(bytes("A title that is long enough[Eng][R]"), info);
       }),
       {1}},
      {"parseArtist",
       "",
       karaoke([=](KTV_ExtraData_t* info) {
         return parseArtist(bytes("A singer with a long name[F]&Bo[M]"), info);
       }),
       {1}},
      {"initKTVInfo",
       "",
       karaoke([](KTV_ExtraData_t* info) {
         initKTVInfo(info);
         return 0;
       }),
       {}}};
  cases.insert(cases.end(), more.begin(), more.end());
}

template <class Record, class Free>
FaultCase freeing(const char* function, Free release) {
  return {function,
          "",
          [=] {
            const auto room = static_cast<Record*>(std::calloc(1, sizeof(Record)));
            char* const text = strdup("text");
            std::memcpy(room, &text, sizeof text);
            return plain([=] { release(room); })();
          },
          {}};
}

void addReleases(Cases& cases) {
  cases.push_back(freeing<velMovie_>("velFreeMovies", [](velMovie_* m) { velFreeMovies(m, 1); }));
  cases.push_back(freeing<velTVShow>("velFreeTVShows", [](velTVShow* s) { velFreeTVShows(s, 1); }));
  cases.push_back(freeing<velAlbum_>("velFreeAlbums", [](velAlbum_* a) { velFreeAlbums(a, 1); }));
  cases.push_back(freeing<velThumb_>("velFreeThumbs", [](velThumb_* t) { velFreeThumbs(t, 1); }));
  const std::vector<FaultCase> more = {
      {"velFreeMovieInfo", "", plain([] { velFreeMovieInfo(nullptr); }), {}},
      {"velFreeTVShowInfo", "", plain([] { velFreeTVShowInfo(nullptr); }), {}},
      {"velFreeTVEpisode", "", plain([] { velFreeTVEpisode(nullptr); }), {}}};
  cases.insert(cases.end(), more.begin(), more.end());
}

void addText(Cases& cases) {
  static char text[64];
  static char room[256];
  static char shell[] = "/any/addon.sh";
  const char* const release = "[x] A.Film.With.A.Long.Name.S01E02.2011.1080p";
  const auto changing = [](void (*change)(string&)) {
    return [change] {
      string copy = "  a text &nbsp; that is &#x26;#33; long enough to be allocated \r\n";
      return plain([&] { change(copy); })();
    };
  };
  const auto coding = [](char* (*code)(char*)) {
    return plain([code] { std::free(code(std::strcpy(text, "a b%20c&d+'"))); });
  };
  const std::vector<FaultCase> more = {
      {"ProcessKeyword", "words", plain([=] { ProcessKeyword(release, 0); }), {kOutOfMemory}},
      {"ProcessKeyword", "encoded", plain([=] { ProcessKeyword(release, 1); }), {kOutOfMemory}},
      {"getDefaultLang",
       "",
       plain([] {
         const char* language = nullptr;
         getDefaultLang(&language, shell);
         touch(language);
       }),
       {}},
      {"replace_string", "", changing([](string& s) { replace_string(&s); }), {}},
      {"removeEmptyChar", "", changing([](string& s) { removeEmptyChar(s); }), {}},
      {"decode_html_entities_utf8",
       "",
       plain([] { decode_html_entities_utf8(room, "a &amp; b &#33; &eacute; &none;"); }),
       {}},
      {"StringConvert2PercentString",
       "",
       plain([] { StringConvert2PercentString(std::strcpy(text, "a b"), 3, room, 200); }),
       {}},
      {"libquilp::url_encode(char*)", "", coding(&libquilp::url_encode), {}},
      {"libquilp::url_decode(char*)", "", coding(&libquilp::url_decode), {}},
      {"libquilp::to_hex(char)", "", plain([] { libquilp::to_hex('a'); }), {}},
      {"libquilp::from_hex(char)", "", plain([] { libquilp::from_hex('a'); }), {}},
      {"to_hex", "", plain([] { to_hex('a'); }), {}},
      {"char2hex", "", plain([] { char2hex('a'); }), {}}};
  cases.insert(cases.end(), more.begin(), more.end());
}

}  // namespace

std::vector<FaultCase> faultCases() {
  Cases cases;
  addMovies(cases);
  addTV(cases);
  addMusic(cases);
  addKaraoke(cases);
  addReleases(cases);
  addText(cases);
  return cases;
}

void chooseRoute(const string& route) {
  string registry;
  for (const char* type : {"Movie", "TV", "Music", "KTV"}) {
    registry += string("[") + type + "]\nClass=Kestrawind\nType=" + type +
                "\nEnable=" + (route == "add-on" ? "TRUE" : "FALSE") + "\nShell=" + addOn + "\n";
  }
  test::writeFile("/etc/config/zorp.conf", registry);
}

void prepareRoutes(const string& folder) {
  addOn = folder + "/addon.sh";
  test::writeFile("/etc/config/catalox.conf", "[addon]\nLANG=de\n");
  std::remove("/sbin/curl");
  if (symlink((folder + "/client.sh").c_str(), "/sbin/curl") != 0) {
    throw std::runtime_error("cannot put a client into /sbin");
  }
}
