#include <fstream>
#include <stdexcept>

#include "fuzz.h"
#include "libquilp.h"
#include "platform.h"
#include "plugin/records.h"
#include "plugin/run_program.h"

// Reads any bytes as the document that an add-on wrote, through every lookup that asks for one of
// the roots that they name. Runs in the box, whose /etc and /tmp it writes.

namespace {

constexpr char kId[] = "imdb-tt1";
constexpr int kCount = 3;

std::string documentText;

void registerAddOns() {
  std::ofstream registry(libquilp::kRegistryFile);
  for (const char* type : {"Movie", "TV", "Music", "KTV"}) {
    registry << '[' << type << "]\nType=" << type
             << "\nClass=Kestrawind\nEnable=TRUE\nShell=/usr/bin/true\n";
  }
}

void runMovies() {
  int error = 0;
  velMovie_* movies = nullptr;
  const int count = velSearchMovie("word", kCount, &movies, &error);
  velFreeMovies(movies, count);
  fuzz::expect(velPrintSearchMovie("word", kCount) == 0, "a list of movies cannot be printed");
}

void runMovie() {
  libquilp::Owned<velMovieInfo_, velFreeMovieInfo> info;
  try {
    velGetMovieByID(kId, &info);
    velPrintMovieByID(kId);
  } catch (const std::logic_error&) {
    fuzz::expect(info.actor.size() == info.role.size() + 1, "an actor without a role is not last");
    return;
  }
  fuzz::expect(info.actor.size() == info.role.size(), "movie: a cast is not in pairs");
}

void runShows() {
  int error = 0;
  velTVShow* shows = nullptr;
  const int count = velSearchTVShows("word", kCount, nullptr, &shows, &error);
  velFreeTVShows(shows, count);
  fuzz::expect(velPrintSearchTVShows("word", kCount, "en") == 0, "a list cannot be printed");
}

void runShow() {
  libquilp::Owned<velTVShowInfo, velFreeTVShowInfo> info;
  velGetTVShowByID(kId, "en", &info);
  fuzz::expect(info.actor_names.size() == info.actor_roles.size(), "show: cast not in pairs");
  velPrintTVShowByID(kId, "en");
}

void runEpisode() {
  libquilp::Owned<velTVEpisode, velFreeTVEpisode> info;
  velGetTVEpisode(kId, 1, 2, "en", &info);
  fuzz::expect(info.actor_names.size() == info.actor_roles.size(), "episode: cast not in pairs");
  velPrintTVEpisode(kId, 1, 2, "en");
}

void runAlbums() {
  velAlbum_* albums = nullptr;
  int count = velSearchAlbum("album", "artist", kCount, &albums);
  velFreeAlbums(albums, count);
  albums = nullptr;
  count = velGetAlbumByArtist("artist", kCount, &albums);
  velFreeAlbums(albums, count);
  velPrintSearchAlbum("album", "artist", kCount);
}

void runThumbnails() {
  velThumb_* thumbs = nullptr;
  const int count = velGetArtistThumbnail("artist", kCount, &thumbs);
  velFreeThumbs(thumbs, count);
}

void runSong() {
  KTV_ExtraData_t info;
  velGetKTVInfo("/songs/a_b.mpg", &info);
  for (const ArtistData_t& artist : info.artists) {
    fuzz::expect(!artist.name.empty(), "an artist has no name");
  }
}

struct Lookup {
  const char* root;
  void (*run)();
};

constexpr Lookup kLookups[] = {
    {"<movielist", runMovies},           {"<movie", runMovie},
    {"<tvshowlist", runShows},           {"<tvshow", runShow},
    {"<tvepisode", runEpisode},          {"<albumlist", runAlbums},
    {"<artistthumbnail", runThumbnails}, {"<KtvInfo", runSong},
};

}  // namespace

// The one of the library is left out: here the add-on writes its document without a process.
libquilp::ProgramEnd libquilp::runProgram(char** argv) {
  while (argv[1] != nullptr) {
    ++argv;
  }
  std::ofstream(*argv, std::ios::binary) << documentText;
  return {};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool registered = (registerAddOns(), true);
  static_cast<void>(registered);
  documentText = fuzz::bytesOf(data, size);
  for (const Lookup& lookup : kLookups) {
    if (documentText.find(lookup.root) != std::string::npos) {
      lookup.run();
    }
  }
  return 0;
}
