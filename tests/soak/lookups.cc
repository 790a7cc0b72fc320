#include "lookups.h"

#include "libquilp.h"

namespace {

using Call = std::function<bool()>;

/// A search, and what it stored released.
template <class Record, class Search>
Call searching(void (*release)(Record*, int), Search search) {
  return [=] {
    Record* records = nullptr;
    const int n = search(&records);
    release(records, n);
    return n > 0;
  };
}

Call movies(const char* keyword, int count) {
  return searching(velFreeMovies, [=](velMovie_** found) {
    int error = 0;
    return velSearchMovie(keyword, count, found, &error);
  });
}

Call shows(const char* keyword, int count) {
  return searching(velFreeTVShows, [=](velTVShow** found) {
    int error = 0;
    return velSearchTVShows(keyword, count, nullptr, found, &error);
  });
}

Call albums(const char* album, const char* artist, int count) {
  return searching(velFreeAlbums,
                   [=](velAlbum_** found) { return velSearchAlbum(album, artist, count, found); });
}

/// A listing that was abandoned stores records, too.
Call albumsBy(const char* artist, int count) {
  return searching(velFreeAlbums, [=](velAlbum_** found) {
    const int listed = velGetAlbumByArtist(artist, count, found);
    int stored = listed;
    while (listed == 0 && *found != nullptr && stored < count && (*found)[stored].name != nullptr) {
      ++stored;
    }
    return stored;
  });
}

Call pictures(const char* artist, int count) {
  return searching(velFreeThumbs,
                   [=](velThumb_** found) { return velGetArtistThumbnail(artist, count, found); });
}

/// Details, in a record that is released also when an error leaves the call.
template <class Record, class Get>
Call details(void (*release)(Record*), Get get) {
  return [=] {
    struct Owned : Record {
      explicit Owned(void (*free)(Record*)) : Record(), release(free) {}
      ~Owned() { release(this); }
      void (*release)(Record*);
    } record(release);
    return get(&record) == 0;
  };
}

Call movie(const char* id) {
  return details(velFreeMovieInfo, [=](velMovieInfo_* info) { return velGetMovieByID(id, info); });
}

Call show(const char* id) {
  return details(velFreeTVShowInfo,
                 [=](velTVShowInfo* info) { return velGetTVShowByID(id, "en", info); });
}

Call episode(const char* id, int season, int number) {
  return details(velFreeTVEpisode, [=](velTVEpisode* info) {
    return velGetTVEpisode(id, season, number, nullptr, info);
  });
}

Call song(const char* path) {
  return [=] {
    KTV_ExtraData_t info = {};
    return velGetKTVInfo(path, &info) == 0;
  };
}

}  // namespace

std::vector<Lookup> roundOfLookups() {
  const bool site = false;
  const bool addOn = true;
  const bool hostile = true;
  return {
      {"movies", site, false, movies("The.Paper.Lighthouse.2011.1080p", 1)},
      {"movies", site, false, movies("everything", 2)},
      {"movies", site, hostile, movies("broken lantern", 8)},  // eight broken title pages
      {"movies", site, hostile, movies("fault500 salt", 1)},
      {"movies", site, false, [] { return velPrintSearchMovie("salt ember", 1) == 0; }},
      {"movies", site, false,
       searching(velFreeMovies,
                 [](velMovie_** found) { return imdbGetMovies("lighthouse", 1, found); })},
      {"movies", site, false, movie("tt9000001")},
      {"movies", site, hostile, movie("faultcut-tt9000002")},
      {"movies", site, hostile, movie("faultbinary-tt9000002")},
      {"movies", site, hostile, movie("tt9'; touch /tmp/ran; '")},
      {"movies", site, hostile, movie("tt9000009")},  // leaves by an error
      {"movies", site, hostile, [] { return velPrintMovieByID("faultclosed-tt9000004") == 0; }},
      {"TV", site, false, shows("signal row", 1)},
      {"TV", site, false, shows("no such show", 1)},
      {"TV", site, false, show("tt8000001")},
      {"TV", site, hostile, show("tt8000004")},  // a picture's address with a command
      {"TV", site, hostile, show("tt8000005")},  // leaves by an error
      {"TV", site, false, [] { return velPrintTVEpisode("tt8000001", 2, 3, "en") == 0; }},
      {"TV", site, hostile, episode("tt8000001", 2, 99)},
      {"music", site, false, albums("salt rope", "tin harbour", 1)},
      {"music", site, hostile, albums("x\"'$(touch /tmp/ran)\n", "[a-c]{1,2}", 1)},
      {"music", site, hostile, albumsBy("torn sleeve", 3)},  // abandons its list
      {"music", site, hostile, albumsBy("odd shapes", 2)},
      {"music", site, false, pictures("night rush", 1)},  // the service is busy at first
      {"music", site, hostile, pictures("curly braces", 1)},
      {"music", site, false, [] { return velPrintGetArtistThumbnail("tin harbour", 2) == 0; }},
      {"karaoke", site, false, song("/share/Ann Lee[F]&Bo Wu[M]_A title[Eng][R].mpg")},
      {"karaoke", site, hostile, song("\xE5[[\xE6_\xFF[]&&[[\x01_.\xE8")},
      {"movies", addOn, false, movies("good", 2)},
      {"movies", addOn, false, movie("abcdegood")},
      {"movies", addOn, hostile, movies("garbage", 2)},
      {"movies", addOn, hostile, movie("abcderoleless")},  // leaves by an error
      {"movies", addOn, hostile, [] { return velPrintSearchMovie("large", 1) == 0; }},
      {"TV", addOn, false, shows("good", 2)},
      {"TV", addOn, false, [] { return velPrintTVShowByID("abcdegood", nullptr) == 0; }},
      {"TV", addOn, false, episode("abcdegood", 1, 2)},
      {"TV", addOn, hostile, shows("fails", 2)},
      {"TV", addOn, hostile, show("abcdekilled")},
      {"TV", addOn, hostile, episode("abcdedeep", 1, 2)},
      {"TV", addOn, hostile, shows("leavesachild", 2)},
      {"music", addOn, false, albums("good", "a & b", 2)},
      {"music", addOn, false, pictures("good", 2)},
      {"music", addOn, false, [] { return velPrintGetAlbumByArtist("good", 1) == 0; }},
      {"music", addOn, hostile, albumsBy("cutoff", 2)},
      {"music", addOn, hostile, pictures("otherroot", 2)},
      {"music", addOn, hostile, [] { return velPrintSearchAlbum("garbage", "", 1) == 0; }},
      {"karaoke", addOn, false, song("/share/good.mpg")},
      {"karaoke", addOn, hostile, song("writesnothing")},
      {"karaoke", addOn, hostile, song("slow")},
      {"karaoke", addOn, hostile, song("shouts")},
  };
}
