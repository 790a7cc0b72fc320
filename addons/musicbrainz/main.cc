// The add-on that asks MusicBrainz about albums, the Cover Art Archive about their covers, and
// fanart.tv or Wikimedia Commons about pictures of artists.

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "answers.h"
#include "kit/http.h"
#include "kit/serve.h"
#include "kit/wikimedia.h"

namespace quilp::musicbrainz {
namespace {

using kit::Album;
using kit::Call;
using kit::Document;
using kit::Http;
using kit::HttpAnswer;
using Clock = std::chrono::steady_clock;

constexpr kit::Service kMusicBrainz{"musicbrainz", "https://musicbrainz.org/ws/2", 1, 1, 24 * 3600};
constexpr kit::Service kCovers{"coverartarchive", "https://coverartarchive.org", 10, 1, 24 * 3600};
constexpr kit::Service kFanart{"fanart", "https://webservice.fanart.tv/v3", 10, 1, 24 * 3600};

constexpr int kMostResults = 100;  // the service gives no more at a time
constexpr std::size_t kMostPages = 10;
constexpr std::chrono::seconds kCoverLimit{10};  // for all covers
constexpr char kNobody[] = "00000000-0000-4000-8000-000000000000";

const kit::Settings& settings() {
  static const kit::Settings read;
  return read;
}

Http& service() {
  static Http http(settings(), kMusicBrainz);
  return http;
}

kit::HttpRequest request(const std::string& path, const kit::Fields& query) {
  kit::HttpRequest made;
  made.path = path;
  made.query = query;
  made.query.emplace_back("fmt", "json");
  return made;
}

/// Without an answer, the text is that of one without values.
std::string ask(const std::string& path, const kit::Fields& query) {
  const HttpAnswer answer = service().get(request(path, query));
  return answer.isFound ? answer.body : "{}";
}

std::string get(Http& http, const kit::HttpRequest& request) {
  const HttpAnswer answer = http.get(request);
  return answer.isFound ? answer.body : "{}";
}

std::size_t countOf(const Call& call) {
  return static_cast<std::size_t>(std::clamp(call.count, 1, kMostResults));
}

/// Covers are a bonus: an album without one is an answer, too.
void addCovers(std::vector<Album>& albums) {
  Http http(settings(), kCovers);
  const Clock::time_point end = Clock::now() + kCoverLimit;
  for (Album& album : albums) {
    if (album.id.empty() || Clock::now() > end) {
      continue;
    }
    kit::HttpRequest cover;
    cover.end = end;
    cover.path = "/release-group/" + kit::percentEncoded(album.id);
    try {
      album.image = readCover(get(http, cover));
    } catch (const kit::HttpError& error) {
      std::fprintf(stderr, "musicbrainz: no covers: %s\n", error.what());
      return;
    } catch (const std::exception&) {  // no JSON
      album.image.clear();
    }
  }
}

void write(std::vector<Album> albums, std::size_t count, Document& document) {
  albums.resize(std::min(albums.size(), count));
  addCovers(albums);
  for (const Album& album : albums) {
    writeAlbum(album, document);
  }
}

bool searchAlbum(const Call& call, Document& document) {
  std::vector<Album> albums;
  for (const bool isPhrase : {true, false}) {
    if (albums.empty() && !call.album.empty()) {
      albums = readAlbums(
                   ask("/release-group", {{"query", albumQuery(call.album, call.artist, isPhrase)},
                                          {"limit", std::to_string(countOf(call))}}))
                   .albums;
    }
  }
  write(std::move(albums), countOf(call), document);
  return true;  // a list without entries is an answer
}

std::string artistOf(const Call& call) {
  return call.artist.empty()
             ? ""
             : readArtist(ask("/artist", {{"query", artistQuery(call.artist)}, {"limit", "10"}}),
                          call.artist);
}

/// Studio albums by date, then live ones and compilations.
void sort(std::vector<Album>& albums) {
  std::stable_sort(albums.begin(), albums.end(), [](const Album& one, const Album& other) {
    if (one.isOther != other.isOther) {
      return other.isOther;
    }
    return !one.date.empty() && (other.date.empty() || one.date < other.date);
  });
}

bool listAlbums(const Call& call, Document& document) {
  const std::string artist = artistOf(call);
  std::vector<Album> albums;
  std::size_t offset = 0;
  for (std::size_t page = 0; page < kMostPages && !artist.empty(); ++page) {
    AlbumPage more = readAlbums(ask("/release-group", {{"artist", artist},
                                                       {"type", "album"},
                                                       {"limit", std::to_string(kMostResults)},
                                                       {"offset", std::to_string(offset)}}));
    std::move(more.albums.begin(), more.albums.end(), std::back_inserter(albums));
    offset += more.read;
    if (more.read == 0 || offset >= more.total) {
      break;
    }
  }
  sort(albums);
  write(std::move(albums), countOf(call), document);
  return true;
}

kit::HttpRequest fanartRequest(const Http& http, const std::string& artist) {
  kit::HttpRequest pictures;
  pictures.path = "/music/" + kit::percentEncoded(artist);
  pictures.secretQuery = {{"api_key", http.key()}};
  return pictures;
}

kit::Texts fanartOf(const std::string& artist) {
  Http http(settings(), kFanart);
  return http.key().empty() ? kit::Texts() : readFanart(get(http, fanartRequest(http, artist)));
}

kit::Texts commonsOf(const std::string& artist) {
  ArtistPictures pictures =
      readRelations(ask("/artist/" + kit::percentEncoded(artist), {{"inc", "url-rels"}}));
  Http http(settings(), kit::kWikidata);
  if (!pictures.entity.empty()) {
    for (const std::string& file :
         readEntityFiles(get(http, kit::wikidataRequest({{"action", "wbgetentities"},
                                                         {"ids", pictures.entity},
                                                         {"props", "claims"}})))) {
      if (std::find(pictures.files.begin(), pictures.files.end(), file) == pictures.files.end()) {
        pictures.files.push_back(file);
      }
    }
  }
  if (pictures.files.empty()) {
    return {};
  }
  const auto found = kit::readFiles(get(http, kit::filesRequest(pictures.files)));
  kit::Texts addresses;
  for (const std::string& file : pictures.files) {
    const auto address = found.find(file);
    if (address != found.end()) {
      addresses.push_back(address->second);
    }
  }
  return addresses;
}

bool listPictures(const Call& call, Document& document) {
  const std::string artist = artistOf(call);
  if (artist.empty()) {
    return true;
  }
  kit::Texts pictures;
  try {
    pictures = fanartOf(artist);
  } catch (const kit::HttpError& error) {  // the other source may answer
    std::fprintf(stderr, "musicbrainz: %s\n", error.what());
  }
  pictures = pictures.empty() ? commonsOf(artist) : pictures;
  pictures.resize(std::min(pictures.size(), countOf(call)));
  for (const std::string& picture : pictures) {
    document.value("url", picture);
  }
  return true;
}

std::string test() {
  std::string told =
      service().test(request("/release-group", {{"query", "releasegroup:test"}, {"limit", "1"}}));
  // Nobody's album and artist: that the services have none is an answer.
  kit::HttpRequest cover;
  cover.path = std::string("/release-group/") + kNobody;
  told += ", " + Http(settings(), kCovers).test(cover, false);
  Http fanart(settings(), kFanart);
  if (!fanart.key().empty()) {
    told += ", " + fanart.test(fanartRequest(fanart, kNobody), false);
  }
  return told;
}

}  // namespace
}  // namespace quilp::musicbrainz

int main(int argc, char** argv) {
  using namespace quilp::musicbrainz;
  return quilp::kit::serve("musicbrainz", argc, argv,
                           {{"searchAlbum", "albumlist", searchAlbum},
                            {"getAlbumByArtist", "albumlist", listAlbums},
                            {"getArtistThumbnail", "artistthumbnail", listPictures}},
                           test);
}
