// TV: find page, title page of shows and episodes, plot summary, episode list, picture page.

#include <json/writer.h>

#include "site.h"

namespace quilp_site {
namespace {

using Titles = std::vector<Json::Value>;

// One object of the pattern for each number from 1.
Titles Repeat(const Json::Value& pattern, int count, int first_id) {
  const std::string text = Json::writeString(Json::StreamWriterBuilder(), pattern);
  Titles titles;
  for (int i = 0; i < count; ++i) {
    Json::Value number;
    number["n"] = (i < 9 ? "0" : "") + std::to_string(i + 1);
    Json::Value title = ParseJson(Fill(text, number));
    title["id"] = "tt" + std::to_string(first_id + i);
    titles.push_back(title);
  }
  return titles;
}

Titles ReadShows(const Json::Value& data) {
  Titles shows(data["shows"].begin(), data["shows"].end());
  const Json::Value& filler = data["filler"];
  for (const Json::Value& show :
       Repeat(filler["show"], filler["count"].asInt(), filler["first_id"].asInt())) {
    shows.push_back(show);
  }
  // Rows whose title pages have faults.
  for (const std::string& fault : FaultNames()) {
    Json::Value row;
    row["id"] = fault + "-" + shows.front()["id"].asString();
    row["title"] = "Broken Aerial";
    shows.push_back(row);
  }
  return shows;
}

Titles ReadEpisodes(const Json::Value& season) {
  const int count = static_cast<int>(season["titles"].size());
  Titles episodes = Repeat(season["episode"], count, season["first_id"].asInt());
  for (Json::ArrayIndex i = 0; i < season["titles"].size(); ++i) {
    episodes[i]["title"] = season["titles"][i];
    episodes[i]["number"] = i + 1;
  }
  return episodes;
}

Site::Page ServeOneOf(const Titles& titles, const std::string& name) {
  return [titles, page = ReadFile(name)](const Request& request) -> Site::Body {
    for (const Json::Value& title : titles) {
      if (title["id"] == request.id) {
        return Fill(page, title);
      }
    }
    return std::nullopt;
  };
}

}  // namespace

void AddTV(Site& site) {
  constexpr char kHost[] = "www.imdb.com";
  const Json::Value data = ParseJson(ReadFile("tv.json"));
  const Titles shows = ReadShows(data);
  const Titles episodes = ReadEpisodes(data["season"]);

  site.Serve(kHost, "/find",
             [shows, page = ReadFile("pages/tv_find.html")](const Request& request) -> Site::Body {
               if (request.Query("ttype") != "tv") {
                 return std::nullopt;
               }
               Json::Value values;
               for (const Json::Value& show : shows) {
                 if (HasWords(show["title"].asString(), request.Query("q"))) {
                   values["rows"].append(show);
                 }
               }
               values[values.isMember("rows") ? "found" : "none"] = "yes";
               return Fill(page, values);
             });
  for (const Titles& titles : {shows, episodes}) {
    site.Serve(kHost, "/title/([^/]+)/", ServeOneOf(titles, "pages/tv_title.html"));
  }
  site.Serve(kHost, "/title/([^/]+)/plotsummary",
             ServeOneOf(shows, "pages/movie_plotsummary.html"));
  site.Serve(kHost, "/media/([^/]+)/strip", ServeOneOf(shows, "pages/tv_picture.html"));
  site.Serve(kHost, "/title/([^/]+)/episodes",
             [season = data["season"], episodes,
              page = ReadFile("pages/tv_episodes.html")](const Request& request) -> Site::Body {
               if (request.id != season["show_id"].asString()) {
                 return std::nullopt;
               }
               Json::Value values;
               values["season"] = request.Query("season");
               for (const Json::Value& episode : episodes) {
                 if (season["season"] == values["season"]) {
                   values["episodes"].append(episode);
                 }
               }
               return Fill(page, values);
             });
}

}  // namespace quilp_site
