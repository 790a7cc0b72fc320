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

std::string Written(const Json::Value& value) {
  return Json::writeString(Json::StreamWriterBuilder(), value);
}

Json::Value Pictures(const Json::Value& addresses) {
  Json::Value pictures(Json::arrayValue);
  for (const Json::Value& address : addresses) {
    pictures.append(Json::objectValue)["url"] = address;
  }
  return pictures;
}

// What the artwork service has on an album: a "text" or "answer" of its own, or the usual document
// around an "album" of its own or around the pictures.
std::string AlbumArtwork(const Json::Value& album) {
  if (album.isMember("text")) {
    return album["text"].asString();
  }
  if (album.isMember("answer")) {
    return Written(album["answer"]);
  }
  Json::Value own;
  for (const char* kind : {"albumcover", "cdart"}) {
    if (album.isMember(kind)) {
      own[kind] = Pictures(album[kind]);
    }
  }
  Json::Value root;
  root["name"] = album["artist"];
  root["albums"][album["id"].asString()] = album.get("album", own);
  return Written(root);
}

std::string ArtistArtwork(const Json::Value& artist) {
  if (artist.isMember("answer")) {
    return Written(artist["answer"]);
  }
  Json::Value root;
  root["name"] = artist["name"];
  root["artistthumb"] = Pictures(artist["backgrounds"]);
  if (artist.isMember("backgrounds")) {
    root["artistbackground"] = Pictures(artist["backgrounds"]);
  }
  return artist.get("backgrounds_text", Written(root)).asString();
}

// Gives what the documents need beyond the data.
Json::Value Complete(Json::Value artist) {
  int n = 0;
  for (Json::Value& album : artist["albums"]) {
    album["n"] = ++n;
    album["artist"] = artist["name"];
    album["artist_id"] = artist["id"];
    album["id"] = album.get("id", Fill("b{{artist_id}}-{{n}}", album));
    album["type"] = album.get("type", "Album");
    album["attributes"] = Fill(album.isMember("type_first") ? R"(type="{{type}}" id="{{id}}")"
                                                            : R"(id="{{id}}" type="{{type}}")",
                               album);
  }
  return artist;
}

struct Data {
  std::vector<Json::Value> artists;
  std::atomic<int> refused{0};  // requests of busy artists
};

std::shared_ptr<Data> ReadData() {
  auto data = std::make_shared<Data>();
  const Json::Value root = ParseJson(ReadFile("music.json"));
  for (const Json::Value& artist : root["artists"]) {
    data->artists.push_back(Complete(artist));
  }
  const Json::Value& filler = root["filler"];
  Json::Value artist = filler["artist"];
  const std::string pattern = Written(filler["album"]);
  for (int i = 0; i < filler["count"].asInt(); ++i) {
    Json::Value number;
    number["n"] = i + 1;
    artist["albums"].append(ParseJson(Fill(pattern, number)));
  }
  data->artists.push_back(Complete(artist));
  return data;
}

// Whether the artist's service is too busy now: it is for as many requests as the data says, then
// answers one.
bool Refuses(Data& data, const Json::Value& artist) {
  const int busy = artist.get("busy", 0).asInt();
  return busy > 0 && data.refused++ % (busy + 1) < busy;
}

// The text between the quotes behind `mark`.
std::string Phrase(const std::string& query, const std::string& mark) {
  const size_t start = query.find(mark + '"');
  if (start == std::string::npos) {
    return "";
  }
  const size_t text = start + mark.size() + 1;
  return query.substr(text, query.find('"', text) - text);
}

}  // namespace

void AddMusic(Site& site) {
  const std::shared_ptr<Data> data = ReadData();
  const Reply busy(503, "<p>Too many requests.</p>");

  site.Serve(kMetadata, "/ws/2/artist/",
             [=, page = ReadFile("pages/music_artists.xml")](const Request& request) -> Site::Body {
               Json::Value values;
               for (const Json::Value& artist : data->artists) {
                 if (!HasWords(artist["name"].asString(), Phrase(request.Query("query"), ""))) {
                   continue;
                 }
                 if (Refuses(*data, artist)) {
                   return busy;
                 }
                 values["artists"].append(artist);
               }
               return Fill(page, values);
             });

  const std::string groups = ReadFile("pages/music_release_groups.xml");
  site.Serve(kMetadata, "/ws/2/release-group", [=](const Request& request) -> Site::Body {
    for (const Json::Value& artist : data->artists) {
      if (artist["id"] == request.Query("artist")) {
        return Fill(groups, artist);
      }
    }
    return std::nullopt;
  });
  site.Serve(kMetadata, "/ws/2/release-group/", [=](const Request& request) -> Site::Body {
    const std::string query = request.Query("query");
    const std::string by = Phrase(query, "artist:");
    Json::Value values;
    for (const Json::Value& artist : data->artists) {
      if (!by.empty() && !HasWords(artist["name"].asString(), by)) {
        continue;
      }
      if (!by.empty() && Refuses(*data, artist)) {
        return busy;
      }
      for (const Json::Value& album : artist["albums"]) {
        if (HasWords(album["title"].asString(), Phrase(query, ""))) {
          values["albums"].append(album);
        }
      }
    }
    return Fill(groups, values);
  });

  site.Serve(kArtwork, "/v3/music/albums/(.+)", [=](const Request& request) -> Site::Body {
    for (const Json::Value& artist : data->artists) {
      for (const Json::Value& album : artist["albums"]) {
        if (album["id"] == request.id) {
          return AlbumArtwork(album);
        }
      }
    }
    return std::nullopt;
  });
  site.Serve(kArtwork, "/v3/music/([^/]+)", [=](const Request& request) -> Site::Body {
    for (const Json::Value& artist : data->artists) {
      if (artist["id"] == request.id) {
        return ArtistArtwork(artist);
      }
    }
    return std::nullopt;
  });
}

}  // namespace quilp_site
