#include "music/artwork.h"

#include <algorithm>

#include "music/json.h"
#include "music/metadata.h"
#include "music/records.h"
#include "platform.h"
#include "plugin/page_fetch.h"

namespace libquilp {
namespace {

/// Identifiers go into the address as they are.
std::optional<Json::Value> fetchArtwork(const std::string& path) {
  ServiceDocument document;
  document.fetchOnce(std::string(FANART_WS_BASE) + "/v3/music/" + path +
                     "?api_key=0f1e2d3c4b5a69788796a5b4c3d2e1f0");
  return readJson(document.path());
}

}  // namespace

// {"albums": {"ID": {"albumcover": [{"url": "URL"}, …], "cdart": [{"url": "URL"}, …]}}}
// {"status": "error"}
std::optional<std::string> coverOf(const char* id, CoverKind kind) {
  if (id == nullptr) {
    return "";
  }
  const auto document = fetchArtwork(std::string("albums/") + id);
  if (!document) {
    return {};
  }
  if (text(member(*document, "status")) == "error") {
    return "";
  }
  const Json::Value& album = member(member(*document, "albums"), id);
  const Json::Value& front = element(member(album, "albumcover"), 0);
  const bool takesDisc = front.isNull() && kind == CoverKind::kFrontOrDisc;
  return text(member(takesDisc ? element(member(album, "cdart"), 0) : front, "url"));
}

// {"artistbackground": [{"url": "URL"}, …]}
int mbfGetArtistThumbnail(const char* artist, int count, velThumb_** thumbs) {
  const auto id = artistIdentifier(artist);
  if (!id) {
    return 0;
  }
  const auto document = fetchArtwork(*id);
  if (!document) {
    return 0;
  }
  const Json::Value& pictures = member(*document, "artistbackground");
  const int size = pictures.isArray() ? static_cast<int>(pictures.size()) : 0;
  const int n = std::max(0, std::min(size, count));
  RecordArray<velThumb_> array(&velFreeThumbs, n);
  for (int i = 0; array && i < n; ++i) {
    const Json::Value& picture = element(pictures, static_cast<Json::ArrayIndex>(i));
    array.add().url = SafeStrdup(text(member(picture, "url")).c_str());
  }
  return array.giveTo(thumbs);
}

}  // namespace libquilp
