#include "answers.h"

#include <algorithm>
#include <string_view>

#include "ascii.h"
#include "kit/json.h"
#include "kit/values.h"
#include "kit/wikimedia.h"

namespace quilp::musicbrainz {
namespace {

using kit::Json;
using kit::Texts;

constexpr double kAlmost = 90;  // of a score of 100

/// "Ana Quist feat. Tom Reed", of names and what joins them.
std::string creditOf(const Json& credits) {
  std::string text;
  for (const Json& credit : credits.list()) {
    const std::string name = credit["name"].text();
    text += name.empty() ? credit["artist"]["name"].text() : name;
    text += credit["joinphrase"].untrimmed();
  }
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string lowered(std::string text) {
  for (char& c : text) {
    c = static_cast<char>(libquilp::toLower(static_cast<unsigned char>(c)));
  }
  return text;
}

bool isCalled(const Json& artist, const std::string& name) {
  Texts names = artist["aliases"].texts("name");
  names.push_back(artist["name"].text());
  names.push_back(artist["sort-name"].text());
  return std::any_of(names.begin(), names.end(), [&name](const std::string& each) {
    return !each.empty() && lowered(each) == lowered(name);
  });
}

/// The list of that name; older answers call it otherwise.
std::vector<Json> listOf(const Json& root, const char* name, const char* old) {
  const std::vector<Json> list = root[name].list();
  return list.empty() ? root[old].list() : list;
}

std::string thumbnailOf(const Json& image) {
  for (const char* const size : {"500", "large", "1200", "250", "small"}) {
    std::string address = kit::addressOf(image["thumbnails"][size].text());
    if (!address.empty()) {
      return address;
    }
  }
  return kit::addressOf(image["image"].text());
}

Texts likedOf(const Json& list) {
  std::vector<Json> images = list.list();
  std::stable_sort(images.begin(), images.end(), [](const Json& one, const Json& other) {
    return one["likes"].number() > other["likes"].number();
  });
  Texts addresses;
  for (const Json& image : images) {
    addresses.push_back(kit::addressOf(image["url"].text()));
  }
  addresses.erase(std::remove(addresses.begin(), addresses.end(), ""), addresses.end());
  return addresses;
}

/// What follows a mark in an address, decoded as far as file names need it.
std::string after(const std::string& address, const std::string& mark) {
  const std::size_t at = address.find(mark);
  std::string text;
  for (std::size_t i = at == std::string::npos ? address.size() : at + mark.size();
       i < address.size() && address[i] != '?' && address[i] != '#'; ++i) {
    const auto digit = [&](std::size_t place) {
      const std::string_view digits = "0123456789abcdef";
      return place < address.size() ? digits.find(static_cast<char>(libquilp::toLower(
                                          static_cast<unsigned char>(address[place]))))
                                    : std::string_view::npos;
    };
    if (address[i] == '%' && digit(i + 1) < 16 && digit(i + 2) < 16) {
      text += static_cast<char>(digit(i + 1) * 16 + digit(i + 2));
      i += 2;
    } else {
      text += address[i] == '_' ? ' ' : address[i];
    }
  }
  return text.find('|') == std::string::npos ? text : "";
}

bool isEntity(const std::string& id) { return id[0] == 'Q' && kit::isNumber(id.substr(1)); }

std::string phrase(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    quoted += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
  }
  return quoted + '"';
}

std::string words(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    const bool isSpecial =
        std::string_view("+-&|!(){}[]^\"~*?:\\/").find(c) != std::string_view::npos;
    escaped += isSpecial ? std::string("\\") + c : std::string(1, c);
  }
  return '(' + lowered(escaped) + ')';  // AND, OR and NOT are words, too
}

}  // namespace

AlbumPage readAlbums(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  const Json root = json.root();
  AlbumPage page;
  for (const Json& group : listOf(root, "release-groups", "release-group")) {
    ++page.read;
    kit::Album album;
    album.id = group["id"].text();
    album.name = group["title"].text();
    album.artist = creditOf(group["artist-credit"]);
    album.date = kit::dateOf(group["first-release-date"].text());
    album.isOther = !group["secondary-types"].list().empty();
    if (!album.name.empty()) {
      page.albums.push_back(std::move(album));
    }
  }
  const double total = std::max(root["count"].number(), root["release-group-count"].number());
  page.total = total > 0 && total < 1e9 ? static_cast<std::size_t>(total) : 0;
  return page;
}

std::string readArtist(const std::string& answer, const std::string& name) {
  const kit::JsonAnswer json(answer);
  const std::vector<Json> artists = listOf(json.root(), "artists", "artist");
  for (const Json& artist : artists) {
    if (isCalled(artist, name)) {
      return artist["id"].text();
    }
  }
  return !artists.empty() && artists[0]["score"].number() >= kAlmost ? artists[0]["id"].text() : "";
}

std::string readCover(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  for (const Json& image : json.root()["images"].list()) {
    const std::vector<Json> types = image["types"].list();
    const bool isFront = image["front"].isTrue() ||
                         std::any_of(types.begin(), types.end(),
                                     [](const Json& type) { return type.text() == "Front"; });
    std::string address = isFront ? thumbnailOf(image) : "";
    if (!address.empty()) {
      return address;
    }
  }
  return "";
}

Texts readFanart(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  std::vector<Json> artists = json.root().members();  // of old answers, one by its name
  artists.insert(artists.begin(), json.root());
  for (const Json& artist : artists) {
    Texts pictures = likedOf(artist["artistthumb"]);
    for (std::string& background : likedOf(artist["artistbackground"])) {
      pictures.push_back(std::move(background));
    }
    if (!pictures.empty()) {
      return pictures;
    }
  }
  return {};
}

ArtistPictures readRelations(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  ArtistPictures pictures;
  for (const Json& relation : json.root()["relations"].list()) {
    const std::string address = relation["url"]["resource"].text();
    const std::string type = relation["type"].text();
    std::string file = type == "image" ? after(address, "commons.wikimedia.org/wiki/File:") : "";
    if (!file.empty()) {
      pictures.files.push_back(std::move(file));
    }
    const std::string entity = type == "wikidata" ? after(address, "wikidata.org/wiki/") : "";
    if (isEntity(entity)) {
      pictures.entity = entity;
    }
  }
  return pictures;
}

Texts readEntityFiles(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  Texts files;
  for (const Json& entity : json.root()["entities"].members()) {
    for (const Json& value : kit::valuesOf(entity, "P18")) {
      const std::string file = value.text();
      if (!file.empty() && file.find('|') == std::string::npos) {
        files.push_back(file);
      }
    }
  }
  return files;
}

std::string albumQuery(const std::string& album, const std::string& artist, bool isPhrase) {
  const auto value = isPhrase ? phrase : words;
  return "releasegroup:" + value(album) + (artist.empty() ? "" : " AND artist:" + value(artist));
}

std::string artistQuery(const std::string& artist) {
  return "artist:" + phrase(artist) + " OR alias:" + phrase(artist);
}

}  // namespace quilp::musicbrainz
