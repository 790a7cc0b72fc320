// TV: find page, title page of shows and episodes, plot summary, episode list, picture page.

#include <json/writer.h>

#include "site.h"

namespace quilp_site {
namespace {

using Titles = std::vector<Json::Value>;

// One object of the pattern for each number from 1.
Titles repeat(const Json::Value& pattern, int count, int first_id) {
  const std::string text = Json::writeString(Json::StreamWriterBuilder(), pattern);
  Titles titles;
  for (int i = 0; i < count; ++i) {
    Json::Value number;
    number["n"] = (i < 9 ? "0" : "") + std::to_string(i + 1);
    Json::Value title = parseJson(fill(text, number));
    title["id"] = "tt" + std::to_string(first_id + i);
    titles.push_back(title);
  }
  return titles;
}

Titles readShows(const Json::Value& data) {
  Titles shows(data["shows"].begin(), data["shows"].end());
  const Json::Value& filler = data["filler"];
  for (const Json::Value& show :
       repeat(filler["show"], filler["count"].asInt(), filler["first_id"].asInt())) {
    shows.push_back(show);
  }
  // Rows that link to faulty title pages.
  for (const std::string& fault : faultNames()) {
    Json::Value row;
    row["id"] = fault + "-" + shows.front()["id"].asString();
    row["title"] = "Broken Aerial";
    shows.push_back(row);
  }
  return shows;
}

Titles readEpisodes(const Json::Value& season) {
  const int count = static_cast<int>(season["titles"].size());
  Titles episodes = repeat(season["episode"], count, season["first_id"].asInt());
  for (Json::ArrayIndex i = 0; i < season["titles"].size(); ++i) {
    episodes[i]["title"] = season["titles"][i];
    episodes[i]["number"] = i + 1;
  }
  return episodes;
}

Site::Page serveOneOf(const Titles& titles, const std::string& name) {
  return [titles, page = readFile(name)](const Request& request) -> Site::Body {
    for (const Json::Value& title : titles) {
      if (title["id"] == request.id) {
        return fill(page, title);
      }
    }
    return std::nullopt;
  };
}

}  // namespace

void addTV(Site& site) {
  constexpr char kHost[] = "www.imdb.com";
  const Json::Value data = parseJson(readFile("tv.json"));
  const Titles shows = readShows(data);
  const Titles episodes = readEpisodes(data["season"]);

  site.serve(kHost, "/find",
             [shows, page = readFile("pages/tv_find.html")](const Request& request) -> Site::Body {
               if (request.parameter("ttype") != "tv") {
                 return std::nullopt;
               }
               Json::Value values;
               for (const Json::Value& show : shows) {
                 if (hasWords(show["title"].asString(), request.parameter("q"))) {
                   values["rows"].append(show);
                 }
               }
               values[values.isMember("rows") ? "found" : "none"] = "yes";
               return fill(page, values);
             });
  for (const Titles& titles : {shows, episodes}) {
    site.serve(kHost, "/title/([^/]+)/", serveOneOf(titles, "pages/tv_title.html"));
  }
  site.serve(kHost, "/title/([^/]+)/plotsummary",
             serveOneOf(shows, "pages/movie_plotsummary.html"));
  site.serve(kHost, "/media/([^/]+)/strip", serveOneOf(shows, "pages/tv_picture.html"));
  site.serve(kHost, "/title/([^/]+)/episodes",
             [season = data["season"], episodes,
              page = readFile("pages/tv_episodes.html")](const Request& request) -> Site::Body {
               if (request.id != season["show_id"].asString()) {
                 return std::nullopt;
               }
               Json::Value values;
               values["season"] = request.parameter("season");
               for (Json::Value episode : episodes) {
                 if (values["season"] == "3") {  // of pages that break off
                   episode["id"] = "faultclosed-" + episode["id"].asString();
                   values["episodes"].append(episode);
                 } else if (season["season"] == values["season"]) {
                   values["episodes"].append(episode);
                 }
               }
               return fill(page, values);
             });
}

}  // namespace quilp_site
