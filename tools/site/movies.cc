// Movies: find page, alternate search, title page, plot summary, combined page, photo page.

#include <json/writer.h>

#include "site.h"

namespace quilp_site {
namespace {

using Movies = std::vector<Json::Value>;

// Gives what the pages need beyond the data.
Json::Value complete(Json::Value movie) {
  auto preset = [&movie](const char* member, const std::string& value) {
    movie[member] = movie.get(member, value);
  };
  const std::string title = movie["title"].asString();
  const std::string year = "(" + movie["year"].asString() + ")";
  preset("words", title);
  preset("found_year", year);
  preset("page_title", title + " " + year);
  preset("plot_summary",
         "It looks like we don't have any Plot Summary for this title yet. Write the first!");
  if (movie.isMember("photo")) {
    preset("photo_path", "/media/" + movie["id"].asString());
  }
  return movie;
}

Movies readMovies() {
  const Json::Value data = parseJson(readFile("movies.json"));
  Movies movies;
  for (const Json::Value& movie : data["movies"]) {
    movies.push_back(complete(movie));
  }
  const Json::Value& filler = data["filler"];
  const std::string pattern = Json::writeString(Json::StreamWriterBuilder(), filler["movie"]);
  for (int i = 0; i < filler["count"].asInt(); ++i) {
    Json::Value number;
    number["n"] = i + 1;
    Json::Value movie = parseJson(fill(pattern, number));
    movie["id"] = "tt" + std::to_string(filler["first_id"].asInt() + i);
    movies.push_back(complete(movie));
  }
  // Rows that link to faulty title pages.
  for (const std::string& fault : faultNames()) {
    Json::Value row;
    row["id"] = fault + "-" + movies.front()["id"].asString();
    row["title"] = "Broken Lantern";
    row["year"] = "2001";
    movies.push_back(complete(row));
  }
  return movies;
}

}  // namespace

void addMovies(Site& site) {
  const Movies movies = readMovies();

  auto serve_search = [&](const char* host, const char* path, const char* words, const char* name) {
    site.serve(host, path, [=, page = readFile(name)](const Request& request) -> Site::Body {
      if (request.parameter("ttype") == "tv") {
        return std::nullopt;
      }
      Json::Value values;
      for (const Json::Value& movie : movies) {
        if (hasWords(movie["words"].asString(), request.parameter(words))) {
          values["rows"].append(movie);
        }
      }
      values[values.isMember("rows") ? "found" : "none"] = "yes";
      return fill(page, values);
    });
  };
  serve_search("www.imdb.com", "/find", "q", "pages/movie_find.html");
  serve_search("akas.imdb.com", "/search/title", "title", "pages/movie_alternate_search.html");

  auto serve_movie = [&](const char* host, const char* path, const char* name) {
    site.serve(host, path, [=, page = readFile(name)](const Request& request) -> Site::Body {
      for (const Json::Value& movie : movies) {
        if (movie["id"] == request.id) {
          return fill(page, movie);
        }
      }
      return std::nullopt;
    });
  };
  serve_movie("www.imdb.com", "/title/([^/]+)/", "pages/movie_title.html");
  serve_movie("www.imdb.com", "/title/([^/]+)/plotsummary", "pages/movie_plotsummary.html");
  serve_movie("akas.imdb.com", "/title/([^/]+)/combined", "pages/movie_combined.html");
  serve_movie("akas.imdb.com", "/media/([^/]+)/", "pages/movie_photo.html");
}

}  // namespace quilp_site
