// Music: artist lookup, album search and release groups in XML; artwork of albums and artists in
// JSON.

#include <json/writer.h>

#include <atomic>
#include <memory>

#include "site.h"

namespace quilp_site {
namespace {

constexpr char kMetadata[] = "musicbrainz.org";
constexpr char kArtwork[] = "webservice.fanart.tv";

std::string written(const Json::Value& value) {
  return Json::writeString(Json::StreamWriterBuilder(), value);
}

Json::Value pictures(const Json::Value& addresses) {
  Json::Value pictures(Json::arrayValue);
  for (const Json::Value& address : addresses) {
    pictures.append(Json::objectValue)["url"] = address;
  }
  return pictures;
}

// What the artwork service has on an album: a "text" or "answer" of its own, or the usual document
// around an "album" of its own or around the pictures.
std::string albumArtwork(const Json::Value& album) {
  if (album.isMember("text")) {
    return album["text"].asString();
  }
  if (album.isMember("answer")) {
    return written(album["answer"]);
  }
  Json::Value own;
  for (const char* kind : {"albumcover", "cdart"}) {
    if (album.isMember(kind)) {
      own[kind] = pictures(album[kind]);
    }
  }
  Json::Value root;
  root["name"] = album["artist"];
  root["albums"][album["id"].asString()] = album.get("album", own);
  return written(root);
}

std::string artistArtwork(const Json::Value& artist) {
  if (artist.isMember("answer")) {
    return written(artist["answer"]);
  }
  Json::Value root;
  root["name"] = artist["name"];
  root["artistthumb"] = pictures(artist["backgrounds"]);
  if (artist.isMember("backgrounds")) {
    root["artistbackground"] = pictures(artist["backgrounds"]);
  }
  return artist.get("backgrounds_text", written(root)).asString();
}

// Gives what the documents need beyond the data.
Json::Value complete(Json::Value artist) {
  int n = 0;
  for (Json::Value& album : artist["albums"]) {
    album["n"] = ++n;
    album["artist"] = artist["name"];
    album["artist_id"] = artist["id"];
    album["id"] = album.get("id", fill("b{{artist_id}}-{{n}}", album));
    album["type"] = album.get("type", "Album");
    album["attributes"] = fill(album.isMember("type_first") ? R"(type="{{type}}" id="{{id}}")"
                                                            : R"(id="{{id}}" type="{{type}}")",
                               album);
  }
  return artist;
}

struct Data {
  std::vector<Json::Value> artists;
  std::atomic<int> refused{0};  // requests of busy artists
};

std::shared_ptr<Data> readData() {
  auto data = std::make_shared<Data>();
  const Json::Value root = parseJson(readFile("music.json"));
  for (const Json::Value& artist : root["artists"]) {
    data->artists.push_back(complete(artist));
  }
  const Json::Value& filler = root["filler"];
  Json::Value artist = filler["artist"];
  const std::string pattern = written(filler["album"]);
  for (int i = 0; i < filler["count"].asInt(); ++i) {
    Json::Value number;
    number["n"] = i + 1;
    artist["albums"].append(parseJson(fill(pattern, number)));
  }
  data->artists.push_back(complete(artist));
  return data;
}

// Whether the artist's service is too busy now: it is for as many requests as the data says, then
// answers one.
bool refuses(Data& data, const Json::Value& artist) {
  const int busy = artist.get("busy", 0).asInt();
  return busy > 0 && data.refused++ % (busy + 1) < busy;
}

// The text between the quotes after `mark`.
std::string phrase(const std::string& query, const std::string& mark) {
  const size_t start = query.find(mark + '"');
  if (start == std::string::npos) {
    return "";
  }
  const size_t text = start + mark.size() + 1;
  return query.substr(text, query.find('"', text) - text);
}

}  // namespace

void addMusic(Site& site) {
  const std::shared_ptr<Data> data = readData();
  const Reply busy(503, "<p>Too many requests.</p>");

  site.serve(kMetadata, "/ws/2/artist/",
             [=, page = readFile("pages/music_artists.xml")](const Request& request) -> Site::Body {
               Json::Value values;
               for (const Json::Value& artist : data->artists) {
                 if (!hasWords(artist["name"].asString(), phrase(request.parameter("query"), ""))) {
                   continue;
                 }
                 if (refuses(*data, artist)) {
                   return busy;
                 }
                 values["artists"].append(artist);
               }
               return fill(page, values);
             });

  const std::string groups = readFile("pages/music_release_groups.xml");
  site.serve(kMetadata, "/ws/2/release-group", [=](const Request& request) -> Site::Body {
    for (const Json::Value& artist : data->artists) {
      if (artist["id"] == request.parameter("artist")) {
        return fill(groups, artist);
      }
    }
    return std::nullopt;
  });
  site.serve(kMetadata, "/ws/2/release-group/", [=](const Request& request) -> Site::Body {
    const std::string query = request.parameter("query");
    const std::string by = phrase(query, "artist:");
    Json::Value values;
    for (const Json::Value& artist : data->artists) {
      if (!by.empty() && !hasWords(artist["name"].asString(), by)) {
        continue;
      }
      if (!by.empty() && refuses(*data, artist)) {
        return busy;
      }
      for (const Json::Value& album : artist["albums"]) {
        if (hasWords(album["title"].asString(), phrase(query, ""))) {
          values["albums"].append(album);
        }
      }
    }
    return fill(groups, values);
  });

  site.serve(kArtwork, "/v3/music/albums/(.+)", [=](const Request& request) -> Site::Body {
    for (const Json::Value& artist : data->artists) {
      for (const Json::Value& album : artist["albums"]) {
        if (album["id"] == request.id) {
          return albumArtwork(album);
        }
      }
    }
    return std::nullopt;
  });
  site.serve(kArtwork, "/v3/music/([^/]+)", [=](const Request& request) -> Site::Body {
    for (const Json::Value& artist : data->artists) {
      if (artist["id"] == request.id) {
        return artistArtwork(artist);
      }
    }
    return std::nullopt;
  });
}

}  // namespace quilp_site
