#include "music/metadata.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "music/artwork.h"
#include "music/records.h"
#include "platform.h"
#include "plugin/page_fetch.h"
#include "text/removal.h"
#include "xml/xml_node.h"

namespace libquilp {
namespace {

constexpr char kReleaseGroups[] = "/ws/2/release-group";

/// A value for a query, encoded by the rule for whole addresses; the rule leaves the rest of the
/// addresses here as it is. An ampersand would end the query.
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

/// The service writes the identifier first, whatever it is called.
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

}  // namespace

// <metadata><artist-list><artist id="ID" …>…</artist>…</artist-list></metadata>
std::optional<std::string> artistIdentifier(const char* artist) {
  ServiceDocument document;
  if (!document.fetch(address("/ws/2/artist/?query=" + phrase(artist)))) {
    return {};
  }
  const XMLNode list = listIn(document, "artist-list");
  const char* id = firstAttribute(list.getChildNode(0));
  if (list.nChildNode("artist") == 0 || id == nullptr) {
    return {};
  }
  return id;
}

// <metadata><release-group-list>
//   <release-group id="ID" type="Album">
//     <title>NAME</title><first-release-date>DATE</first-release-date></release-group>…
AlbumListing listAlbums(const char* artist, int count, velAlbum_** albums) {
  const auto id = artistIdentifier(artist);
  if (!id) {
    return {0, 0};
  }
  ServiceDocument document;
  document.fetchOnce(
      address(std::string(kReleaseGroups) + "?artist=" + inQuery(*id) + "&type=album"));
  const XMLNode list = listIn(document, "release-group-list");
  const int size = list.nChildNode("release-group");
  if (size == 0) {
    return {0, 0};
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
    album.name = SafeStrdup(node.getChildNode("title").getText(0));
    album.releasedate = SafeStrdup(orEmpty(node.getChildNode("first-release-date").getText(0)));
    const auto cover = coverOf(group.id, CoverKind::kFrontOrDisc);
    if (!cover) {
      return {0, array.giveTo(albums)};
    }
    album.image = SafeStrdup(cover->c_str());
  }
  const int found = array.giveTo(albums);
  return {found, found};
}

int mbfGetAlbumByArtist(const char* artist, int count, velAlbum_** albums) {
  return listAlbums(artist, count, albums).found;
}

// <metadata><release-group-list>
//   <release-group id="ID" …><title>NAME</title>
//     <artist-credit><name-credit><artist><name>ARTIST</name></artist></name-credit>…
int mbfSearchAlbum(const char* album, const char* artist, int count, velAlbum_** albums) {
  const std::string byArtist = *artist != '\0' ? "+and+artist:" + phrase(artist) : "";
  ServiceDocument document;
  if (!document.fetch(address(std::string(kReleaseGroups) + "/?query=" + phrase(album) + byArtist +
                              "&type=album"))) {
    return 0;
  }
  const XMLNode list = listIn(document, "release-group-list");
  const int size = list.nChildNode("release-group");
  if (size == 0) {
    return 0;
  }
  const int n = std::min(size, count);
  RecordArray<velAlbum_> array(&velFreeAlbums, n);
  if (!array) {
    return array.giveTo(albums);
  }
  XMLNode node = list.getChildNode(0);
  for (int i = 0; i < n; ++i, node = node.getNextNode()) {
    velAlbum_& record = array.add();
    const XMLNode credit = node.getChildNode("artist-credit").getChildNode("name-credit");
    record.name = SafeStrdup(node.getChildNode("title").getText(0));
    record.artist = SafeStrdup(credit.getChildNode("artist").getChildNode("name").getText(0));
    record.releasedate = SafeStrdup("");  // not read here, on purpose
    record.image =
        SafeStrdup(coverOf(firstAttribute(node), CoverKind::kFront).value_or("").c_str());
  }
  array.giveTo(albums);
  return n;
}

}  // namespace libquilp
