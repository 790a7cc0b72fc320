#include "music/artwork.h"

#include <algorithm>

#include "music/json.h"
#include "music/metadata.h"
#include "platform.h"
#include "plugin/page_fetch.h"

namespace libquilp {
namespace {

/// Identifiers are inserted into the address unchanged.
std::optional<Json::Value> fetchArtwork(const std::string& path, const Context& context) {
  ServiceDocument document(context);
  document.fetchOnce(std::string(FANART_WS_BASE) + "/v3/music/" + path +
                     "?api_key=0f1e2d3c4b5a69788796a5b4c3d2e1f0");
  return readJson(document.path(), context);
}

}  // namespace

// {"albums": {"ID": {"albumcover": [{"url": "URL"}, …], "cdart": [{"url": "URL"}, …]}}}
// {"status": "error"}
std::string coverOf(const Json::Value& document, const char* id, CoverKind kind) {
  if (text(member(document, "status")) == "error") {
    return "";
  }
  const Json::Value& album = member(member(document, "albums"), id);
  const Json::Value& front = element(member(album, "albumcover"), 0);
  const bool takesDisc = front.isNull() && kind == CoverKind::kFrontOrDisc;
  return text(member(takesDisc ? element(member(album, "cdart"), 0) : front, "url"));
}

std::optional<std::string> fetchCover(const char* id, CoverKind kind, const Context& context) {
  if (id == nullptr) {
    return "";
  }
  const auto document = fetchArtwork(std::string("albums/") + id, context);
  return document ? std::optional<std::string>(coverOf(*document, id, kind)) : std::nullopt;
}

// {"artistbackground": [{"url": "URL"}, …]}
RecordArray<velThumb_> picturesOf(const Json::Value& document, int count) {
  const Json::Value& pictures = member(document, "artistbackground");
  const int size = pictures.isArray() ? static_cast<int>(pictures.size()) : 0;
  const int n = std::max(0, std::min(size, count));
  RecordArray<velThumb_> array(&velFreeThumbs, n);
  for (int i = 0; array && i < n; ++i) {
    const Json::Value& picture = element(pictures, static_cast<Json::ArrayIndex>(i));
    array.add().url = SafeStrdup(text(member(picture, "url")).c_str());
  }
  return array;
}

Found<velThumb_> fetchPictures(const char* artist, int count, const Context& context) {
  const auto id = fetchArtistIdentifier(artist, context);
  if (!id) {
    return {};
  }
  const auto document = fetchArtwork(*id, context);
  if (!document) {
    Found<velThumb_> none;
    none.reason = Reason::kMalformedPage;
    return none;
  }
  return Found<velThumb_>(picturesOf(*document, count));
}

}  // namespace libquilp
