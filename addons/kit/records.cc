#include "records.h"

#include <algorithm>

namespace quilp::kit {
namespace {

constexpr std::size_t kMostNames = 20;  // of one kind
constexpr std::size_t kMostActors = 50;

void add(Document& document, const char* name, const std::string& text) {
  if (!text.empty()) {
    document.value(name, text);
  }
}

void add(Document& document, const char* name, const Texts& texts) {
  Texts told;
  for (const std::string& text : texts) {
    if (told.size() < kMostNames && std::find(told.begin(), told.end(), text) == told.end()) {
      add(document, name, text);
      told.push_back(text);
    }
  }
}

void add(Document& document, const std::vector<Actor>& cast) {
  for (std::size_t i = 0; i < std::min(cast.size(), kMostActors); ++i) {
    document.open("actor");
    document.value("name", cast[i].name);
    document.value("role", cast[i].role);
    document.close();
  }
}

/// What tells a title from others like it.
void addMatch(Document& document, const Title& title) {
  add(document, "original_title", title.originalTitle);
  add(document, "alternative_title", title.alternativeTitles);
  add(document, "votes", title.votes);
  add(document, "imdb", title.imdb);
}

}  // namespace

void writeMovieHit(const Title& movie, Document& document) {
  document.open("movie");
  add(document, "id", movie.id);
  add(document, "title", movie.title);
  add(document, "url", movie.poster);
  add(document, "year", movie.date.substr(0, 4));
  add(document, "outline", movie.outline);
  addMatch(document, movie);
  document.close();
}

void writeShowHit(const Title& show, Document& document) {
  document.open("tvshow");
  add(document, "id", show.id);
  add(document, "title", show.title);
  add(document, "url", show.poster);
  add(document, "first_air_date", show.date);
  add(document, "outline", show.outline);
  addMatch(document, show);
  document.close();
}

void writeMovie(const Title& movie, Document& document) {
  add(document, "title", movie.title);
  add(document, "year", movie.date.substr(0, 4));
  add(document, "rating", movie.rating);
  add(document, "id", movie.id);
  add(document, "imdb", movie.imdb);
  add(document, "director", movie.directors);
  add(document, "mpaa", movie.certificate);
  add(document, "company", movie.companies.empty() ? "" : movie.companies[0]);
  add(document, "country", movie.countries);
  add(document, "genre", movie.genres);
  add(document, movie.cast);
  add(document, "outline", movie.outline);
  add(document, "plot", movie.outline);
  add(document, "poster", movie.poster);
}

void writeShow(const Title& show, Document& document) {
  add(document, "title", show.title);
  add(document, "id", show.id);
  add(document, "imdb", show.imdb);
  add(document, "first_air_date", show.date);
  add(document, "last_air_date", show.lastDate);
  add(document, "poster", show.poster);
  add(document, "banner", show.banner);
  add(document, "outline", show.outline);
  add(document, "rating", show.rating);
  add(document, show.cast);
  add(document, "genres", show.genres);
  add(document, "duration", show.duration);
  add(document, "content_rating", show.certificate);
  add(document, "network", show.networks);
  add(document, "creator", show.creators);
}

void writeEpisode(const Episode& episode, Document& document) {
  add(document, "title", episode.title);
  add(document, "id", episode.id);
  add(document, "air_date", episode.date);
  add(document, "thumbnail", episode.thumbnail);
  add(document, "outline", episode.outline);
  add(document, episode.cast);
  add(document, "genre", episode.genres);
  add(document, "director", episode.directors);
  add(document, "rating", episode.rating);
}

void writeAlbum(const Album& album, Document& document) {
  document.open("album");
  add(document, "name", album.name);
  add(document, "artist", album.artist);
  add(document, "releasedate", album.date);
  add(document, "image", album.image);
  document.close();
}

}  // namespace quilp::kit
