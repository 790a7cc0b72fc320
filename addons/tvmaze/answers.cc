#include "answers.h"

#include <algorithm>

#include "kit/json.h"
#include "kit/values.h"

namespace quilp::tvmaze {
namespace {

using kit::Json;
using kit::Title;

std::string pictureOf(const Json& image) {
  const std::string original = kit::addressOf(image["original"].text());
  return original.empty() ? kit::addressOf(image["medium"].text()) : original;
}

/// The first one.
std::string bannerOf(const Json& images) {
  std::string found;
  for (const Json& image : images.list()) {
    const std::string address = kit::addressOf(image["resolutions"]["original"]["url"].text());
    if (image["type"].text() == "banner" && found.empty()) {
      found = address;
    }
  }
  return found;
}

std::vector<kit::Actor> castOf(const Json& cast) {
  std::vector<kit::Actor> actors;
  for (const Json& each : cast.list()) {
    const std::string name = each["person"]["name"].text();
    if (!name.empty()) {
      actors.push_back({name, each["character"]["name"].text()});
    }
  }
  return actors;
}

/// When the last season ended, as old answers do not tell when a show did.
std::string endOf(const Json& show) {
  std::string end = kit::dateOf(show["ended"].text());
  if (end.empty() && show["status"].text() == "Ended") {
    for (const Json& season : show["_embedded"]["seasons"].list()) {
      end = std::max(end, kit::dateOf(season["endDate"].text()));
    }
  }
  return end;
}

Title titleOf(const Json& show) {
  Title title;
  title.id = show["id"].text();
  title.imdb = kit::imdbOf(show["externals"]["imdb"].text());
  title.title = show["name"].text();
  title.date = kit::dateOf(show["premiered"].text());
  title.lastDate = endOf(show);
  title.outline = kit::textOfHtml(show["summary"].text());
  title.poster = pictureOf(show["image"]);
  title.rating = kit::ratingOf(show["rating"]["average"].number());
  const double minutes = show["runtime"].number();
  title.duration = kit::minutesOf(minutes > 0 ? minutes : show["averageRuntime"].number());
  for (const Json& genre : show["genres"].list()) {
    title.genres.push_back(genre.text());
  }
  for (const char* const sender : {"network", "webChannel"}) {
    title.networks.push_back(show[sender]["name"].text());
  }
  const Json more = show["_embedded"];
  title.cast = castOf(more["cast"]);
  title.banner = bannerOf(more["images"]);
  for (const Json& member : more["crew"].list()) {
    if (member["type"].text() == "Creator") {
      title.creators.push_back(member["person"]["name"].text());
    }
  }
  return title;
}

}  // namespace

std::vector<Title> readSearch(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  std::vector<Title> titles;
  for (const Json& each : json.root().list()) {
    titles.push_back(titleOf(each["show"]));
  }
  return titles;
}

Title readShow(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  return titleOf(json.root());
}

kit::Episode readEpisode(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  const Json root = json.root();
  kit::Episode episode;
  episode.id = root["id"].text();
  episode.title = root["name"].text();
  episode.date = kit::dateOf(root["airdate"].text());
  episode.outline = kit::textOfHtml(root["summary"].text());
  episode.thumbnail = pictureOf(root["image"]);
  episode.rating = kit::ratingOf(root["rating"]["average"].number());
  return episode;
}

}  // namespace quilp::tvmaze
