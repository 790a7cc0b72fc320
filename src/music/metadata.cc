#include "music/metadata.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "music/artwork.h"
#include "platform.h"
#include "plugin/page_fetch.h"
#include "text/removal.h"
#include "xml/xml_node.h"

namespace libquilp {
namespace {

constexpr char kReleaseGroups[] = "/ws/2/release-group";

/// Encodes a value for a query by the rule for whole URLs, which leaves the rest of these addresses
/// unchanged. Also encodes ampersands, which would end the query.
std::string inQuery(std::string value) {
  const std::unique_ptr<char, decltype(&std::free)> encoded(url_encode(value.data()), &std::free);
  return replaced(orEmpty(encoded.get()), '&', "%26");
}

std::string phrase(const char* value) { return '"' + inQuery(value) + '"'; }

std::string address(const std::string& pathAndQuery) {
  return std::string(MUSICBRAINZ_WS_BASE) + pathAndQuery;
}

/// A list in a document of the service; empty when the document is bad.
XMLNode listIn(const ServiceDocument& document, const char* list) {
  int error = 0;
  return XMLNode::openFileHelper(document.path(), &error, "metadata").getChildNode(list);
}

/// Why such a list is empty.
Found<velAlbum_> nothingIn(const ServiceDocument& document) {
  Found<velAlbum_> nothing;
  int error = 0;
  if (readFile(document.path()).value_or("").empty()) {
    nothing.reason = Reason::kEmptyPage;
  } else if (!XMLNode::openFileHelper(document.path(), &error, "metadata")) {
    nothing.reason = Reason::kMalformedPage;
  } else {
    nothing.reason = Reason::kNothingFound;
  }
  return nothing;
}

/// The first attribute, of any name: the service writes the identifier first.
const char* firstAttribute(const XMLNode& node) { return node.getAttribute(0).lpszValue; }

struct ReleaseGroup {
  const char* type = nullptr;
  const char* id = nullptr;
};

ReleaseGroup attributesOf(const XMLNode& node) {
  ReleaseGroup group;
  node.forEachAttribute([&group](const XMLAttribute& attribute) {
    if (std::strcmp(attribute.lpszName, "type") == 0) {
      group.type = attribute.lpszValue;
    } else if (std::strcmp(attribute.lpszName, "id") == 0) {
      group.id = attribute.lpszValue;
    }
  });
  return group;
}

// <release-group id="ID" type="Album">
//   <title>NAME</title><first-release-date>DATE</first-release-date></release-group>
void readListed(const XMLNode& group, velAlbum_& album) {
  album.name = SafeStrdup(group.getChildNode("title").getText(0));
  album.releasedate = SafeStrdup(orEmpty(group.getChildNode("first-release-date").getText(0)));
}

// <release-group id="ID" …><title>NAME</title>
//   <artist-credit><name-credit><artist><name>ARTIST</name></artist></name-credit>…
void readFound(const XMLNode& group, velAlbum_& album) {
  const XMLNode credit = group.getChildNode("artist-credit").getChildNode("name-credit");
  album.name = SafeStrdup(group.getChildNode("title").getText(0));
  album.artist = SafeStrdup(credit.getChildNode("artist").getChildNode("name").getText(0));
  album.releasedate = SafeStrdup("");  // not read here, on purpose
}

// <metadata><artist-list><artist id="ID" …>…</artist>…</artist-list></metadata>
std::optional<std::string> artistIdentifierOf(const XMLNode& artistList) {
  const char* id = firstAttribute(artistList.getChildNode(0));
  if (artistList.nChildNode("artist") == 0 || id == nullptr) {
    return {};
  }
  return id;
}

}  // namespace

std::optional<std::string> fetchArtistIdentifier(const char* artist, const Context& context) {
  ServiceDocument document(context);
  if (!document.fetch(address("/ws/2/artist/?query=" + phrase(artist)))) {
    return {};
  }
  return artistIdentifierOf(listIn(document, "artist-list"));
}

// <metadata><release-group-list><release-group …>…</release-group>…
Found<velAlbum_> listAlbums(const char* artist, int count, const Context& context) {
  const auto id = fetchArtistIdentifier(artist, context);
  if (!id) {
    return {};
  }
  ServiceDocument document(context);
  document.fetchOnce(
      address(std::string(kReleaseGroups) + "?artist=" + inQuery(*id) + "&type=album"));
  const XMLNode list = listIn(document, "release-group-list");
  const int size = list.nChildNode("release-group");
  if (size == 0) {
    return nothingIn(document);
  }
  const int n = std::min(size, count);
  RecordArray<velAlbum_> array(&velFreeAlbums, n);
  XMLNode node = list.getChildNode(0);
  for (int i = 0; array && i < n; ++i, node = node.getNextNode()) {
    const ReleaseGroup group = attributesOf(node);
    if (group.type == nullptr || std::strcmp(group.type, "Album") != 0) {
      continue;
    }
    velAlbum_& album = array.add();
    readListed(node, album);
    const auto cover = fetchCover(group.id, CoverKind::kFrontOrDisc, context);
    if (!cover) {
      Found<velAlbum_> abandoned(std::move(array));
      abandoned.count = 0;
      abandoned.reason = Reason::kMalformedPage;
      return abandoned;
    }
    album.image = SafeStrdup(cover->c_str());
  }
  return Found<velAlbum_>(std::move(array));
}

Found<velAlbum_> searchAlbums(const char* album, const char* artist, int count,
                              const Context& context) {
  const std::string byArtist = *artist != '\0' ? "+and+artist:" + phrase(artist) : "";
  ServiceDocument document(context);
  if (!document.fetch(address(std::string(kReleaseGroups) + "/?query=" + phrase(album) + byArtist +
                              "&type=album"))) {
    return {};
  }
  const XMLNode list = listIn(document, "release-group-list");
  const int size = list.nChildNode("release-group");
  if (size == 0) {
    return nothingIn(document);
  }
  const int n = std::min(size, count);
  RecordArray<velAlbum_> array(&velFreeAlbums, n);
  XMLNode node = list.getChildNode(0);
  for (int i = 0; array && i < n; ++i, node = node.getNextNode()) {
    velAlbum_& record = array.add();
    readFound(node, record);
    record.image = SafeStrdup(
        fetchCover(firstAttribute(node), CoverKind::kFront, context).value_or("").c_str());
  }
  const bool outOfMemory = !array;
  Found<velAlbum_> found(std::move(array));
  found.count = outOfMemory ? 0 : n;
  return found;
}

}  // namespace libquilp
