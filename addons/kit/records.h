#pragma once

#include <string>
#include <vector>

#include "document.h"

namespace quilp::kit {

/// What add-ons tell, as documents have it. What is not known is empty and gets no element.
using Texts = std::vector<std::string>;

struct Actor {
  std::string name{};
  std::string role{};
};

/// A movie or a TV show.
struct Title {
  std::string id{};
  std::string imdb{};  // tt0000001
  std::string title{};
  std::string originalTitle{};
  Texts alternativeTitles{};
  std::string date{};  // of release, or first on the air
  std::string lastDate{};
  std::string outline{};
  std::string poster{};
  std::string banner{};
  std::string rating{};
  std::string votes{};
  std::string certificate{};  // for which age
  std::string duration{};
  Texts directors{};
  Texts creators{};
  Texts companies{};
  Texts networks{};
  Texts countries{};
  Texts genres{};
  std::vector<Actor> cast{};
};

struct Episode {
  std::string id{};
  std::string title{};
  std::string date{};
  std::string outline{};
  std::string thumbnail{};
  std::string rating{};
  Texts directors{};
  Texts genres{};
  std::vector<Actor> cast{};
};

struct Album {
  std::string id{};  // not in a document
  std::string name{};
  std::string artist{};
  std::string date{};
  std::string image{};
  bool isOther = false;  // live, a compilation and the like; not in a document
};

void writeMovieHit(const Title& movie, Document& document);
void writeShowHit(const Title& show, Document& document);
void writeMovie(const Title& movie, Document& document);
void writeShow(const Title& show, Document& document);
void writeEpisode(const Episode& episode, Document& document);
void writeAlbum(const Album& album, Document& document);

}  // namespace quilp::kit
