#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kit/records.h"

// The answers of MusicBrainz, the Cover Art Archive and fanart.tv as records. What is missing, null
// or of another type is empty. Each throws std::runtime_error for a text that is no JSON.

namespace quilp::musicbrainz {

struct AlbumPage {
  std::vector<kit::Album> albums{};
  std::size_t read = 0;   // of the service's albums, those that this page has
  std::size_t total = 0;  // that the service has
};

/// Of /release-group, searched or browsed: best first, or in the service's order.
AlbumPage readAlbums(const std::string& answer);

/// Of /artist?query=: the identifier of the artist who is called so, or almost; empty for none.
std::string readArtist(const std::string& answer, const std::string& name);

/// Of coverartarchive.org: the picture of the front; empty for none.
std::string readCover(const std::string& answer);

/// Of fanart.tv: pictures of the artist, those that people like best first.
kit::Texts readFanart(const std::string& answer);

/// Where the free pictures of an artist are.
struct ArtistPictures {
  kit::Texts files{};    // of Wikimedia Commons
  std::string entity{};  // of Wikidata, which may name more
};

/// Of /artist/ID?inc=url-rels.
ArtistPictures readRelations(const std::string& answer);

/// Of Wikidata's wbgetentities: the files of the entity's pictures.
kit::Texts readEntityFiles(const std::string& answer);

/// A query for albums by title and, unless it is empty, artist: with its words in this order, or
/// anywhere.
std::string albumQuery(const std::string& album, const std::string& artist, bool isPhrase);
std::string artistQuery(const std::string& artist);

}  // namespace quilp::musicbrainz
