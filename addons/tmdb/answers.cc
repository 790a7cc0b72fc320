#include "answers.h"

#include <algorithm>
#include <string_view>

#include "kit/json.h"
#include "kit/values.h"
#include "language.h"

namespace quilp::tmdb {
namespace {

using kit::Json;
using kit::Kind;
using kit::Texts;
using kit::Title;

constexpr char kPictures[] = "https://image.tmdb.org/t/p/";
constexpr char kBannerSize[] = "w1280";

std::string pictureOf(const std::string& size, const std::string& path) {
  return path.empty() || path[0] != '/' ? "" : kit::addressOf(kPictures + size + path);
}

/// Names of members, which differ between movies and shows.
struct Names {
  const char* title;
  const char* originalTitle;
  const char* date;
};
constexpr Names kMovieNames{"title", "original_title", "release_date"};
constexpr Names kShowNames{"name", "original_name", "first_air_date"};

const Names& namesOf(Kind kind) { return kind == Kind::kMovie ? kMovieNames : kShowNames; }

/// What hits and details have in common.
Title commonOf(const Json& json, const Wanted& wanted) {
  const Names& names = namesOf(wanted.kind);
  Title title;
  title.id = json["id"].text();
  title.title = json[names.title].text();
  title.originalTitle = json[names.originalTitle].text();
  title.date = kit::dateOf(json[names.date].text());
  title.outline = json["overview"].text();
  title.poster = pictureOf(wanted.posterSize, json["poster_path"].text());
  title.rating = kit::ratingOf(json["vote_average"].number());
  title.votes = kit::countOf(json["vote_count"].number());
  return title;
}

/// Whether a hit's title is in the wanted language: what is not translated is the original.
bool hasTitle(const Json& json, const Title& title, const Wanted& wanted) {
  return !title.title.empty() && (title.title != title.originalTitle ||
                                  json["original_language"].text() == kit::baseOf(wanted.language));
}

std::vector<kit::Actor> castOf(const Json& cast) {
  std::vector<kit::Actor> actors;
  for (const Json& each : cast.list()) {
    const std::string name = each["name"].text();
    if (!name.empty()) {
      actors.push_back({name, each["character"].text()});
    }
  }
  return actors;
}

Texts directorsOf(const Json& crew) {
  Texts directors;
  for (const Json& each : crew.list()) {
    if (each["job"].text() == "Director") {
      directors.push_back(each["name"].text());
    }
  }
  return directors;
}

/// The poster of the best language: of two, the one that is first in the answer.
std::string posterIn(const Json& images, const std::string& language) {
  const std::string wanted[] = {kit::baseOf(language), "en", ""};
  for (const std::string& each : wanted) {
    for (const Json& image : images.list()) {
      if (image["iso_639_1"].text() == each && !image["file_path"].text().empty()) {
        return image["file_path"].text();
      }
    }
  }
  return "";
}

/// For which age, in the wanted country, else in the United States.
std::string certificateOf(const Json& title, const std::string& language) {
  for (const std::string& region : {kit::regionOf(language), std::string("US")}) {
    for (const Json& country : title["release_dates"]["results"].list()) {
      const Texts found = country["release_dates"].texts("certification");
      if (country["iso_3166_1"].text() == region && !found.empty()) {
        return found[0];
      }
    }
    for (const Json& country : title["content_ratings"]["results"].list()) {
      if (country["iso_3166_1"].text() == region && !country["rating"].text().empty()) {
        return country["rating"].text();
      }
    }
  }
  return "";
}

std::string imdbOf(const Json& title) {
  const std::string imdb = kit::imdbOf(title["imdb_id"].text());
  return imdb.empty() ? kit::imdbOf(title["external_ids"]["imdb_id"].text()) : imdb;
}

}  // namespace

std::vector<Title> readSearch(const std::string& answer, const Wanted& wanted,
                              const std::string& english) {
  const kit::JsonAnswer json(answer);
  const kit::JsonAnswer other(english);
  std::vector<Title> titles;
  for (const Json& each : json.root()["results"].list()) {
    Title title = commonOf(each, wanted);
    for (const Json& one : other.root()["results"].list()) {
      const Title more = commonOf(one, wanted);
      if (title.id == more.id) {
        title.title = hasTitle(each, title, wanted) ? title.title : more.title;
        title.outline = title.outline.empty() ? more.outline : title.outline;
        title.poster = title.poster.empty() ? more.poster : title.poster;
      }
    }
    titles.push_back(std::move(title));
  }
  return titles;
}

bool isTranslated(const std::string& answer, const Wanted& wanted) {
  const kit::JsonAnswer json(answer);
  const std::vector<Json> results = json.root()["results"].list();
  return std::all_of(results.begin(), results.end(), [&wanted](const Json& each) {
    const Title title = commonOf(each, wanted);
    return !title.outline.empty() && hasTitle(each, title, wanted);
  });
}

Title readTitle(const std::string& answer, const Wanted& wanted) {
  const kit::JsonAnswer json(answer);
  const Json root = json.root();
  const Translations translations(root, wanted.language);
  Title title = commonOf(root, wanted);
  title.title = translations.title(namesOf(wanted.kind).title, title.title, title.originalTitle);
  title.outline = translations.text("overview", title.outline);
  if (title.poster.empty()) {
    title.poster =
        pictureOf(wanted.posterSize, posterIn(root["images"]["posters"], wanted.language));
  }
  title.banner = pictureOf(kBannerSize, root["backdrop_path"].text());
  title.imdb = imdbOf(root);
  title.lastDate = kit::dateOf(root["last_air_date"].text());
  title.certificate = certificateOf(root, wanted.language);
  title.genres = root["genres"].texts("name");
  title.companies = root["production_companies"].texts("name");
  title.countries = root["production_countries"].texts("name");
  title.networks = root["networks"].texts("name");
  title.creators = root["created_by"].texts("name");
  title.directors = directorsOf(root["credits"]["crew"]);
  title.cast = castOf(root["credits"]["cast"]);
  for (const Json& minutes : root["episode_run_time"].list()) {
    title.duration = title.duration.empty() ? kit::minutesOf(minutes.number()) : title.duration;
  }
  return title;
}

kit::Episode readEpisode(const std::string& answer, const Wanted& wanted) {
  const kit::JsonAnswer json(answer);
  const Json root = json.root();
  const Translations translations(root, wanted.language);
  const std::string number = root["episode_number"].text();
  kit::Episode episode;
  episode.id = root["id"].text();
  episode.title = root["name"].text();
  if (episode.title.empty() || isPlaceholder(episode.title, number)) {
    const std::string other = translations.text("name", "");
    episode.title = other.empty() || isPlaceholder(other, number) ? episode.title : other;
  }
  episode.date = kit::dateOf(root["air_date"].text());
  episode.outline = translations.text("overview", root["overview"].text());
  episode.thumbnail = pictureOf(wanted.stillSize, root["still_path"].text());
  episode.rating = kit::ratingOf(root["vote_average"].number());
  episode.directors = directorsOf(root["crew"]);
  episode.cast = castOf(root["credits"]["cast"]);
  for (kit::Actor& guest : castOf(root["guest_stars"])) {
    episode.cast.push_back(std::move(guest));
  }
  return episode;
}

std::string readFound(const std::string& answer, Kind kind) {
  const kit::JsonAnswer json(answer);
  const Texts ids = json.root()[kind == Kind::kMovie ? "movie_results" : "tv_results"].texts("id");
  return ids.empty() ? "" : ids[0];
}

bool isPlaceholder(const std::string& name, const std::string& number) {
  // What is left of "Episode 5", "第 5 集" or "5. epizoda" without the number, blanks and full
  // stops.
  static constexpr std::string_view kWords[] = {
      "Episode", "Épisode", "Folge",     "Episodio", "Episódio", "Aflevering", "Avsnitt",
      "Afsnit",  "Episod",  "Jakso",     "Odcinek",  "Epizoda",  "epizoda",    "Epizóda",
      "epizóda", "epizód",  "rész",      "Bölüm",    "Эпизод",   "Серия",      "Серія",
      "Епизод",  "Епізод",  "Επεισόδιο", "Tập",      "ตอนที่",     "الحلقة",     "פרק",
      "第集",    "第話",    "第话",      "에피소드", "화",       "회",         "Episodul",
      "Epizode", "Sērija",  "Epizod",    "Capitol",  "Capítulo", "Kapitola",   "قسمت",
      "Þáttur",  "Osa",     "Díl",       "díl",      "एपिसोड",   "episode",    "episod",
  };
  const std::size_t at = name.find(number);
  if (number.empty() || at == std::string::npos) {
    return false;
  }
  std::string rest = name;
  rest.erase(at, number.size());
  rest.erase(std::remove_if(rest.begin(), rest.end(), [](char c) { return c == ' ' || c == '.'; }),
             rest.end());
  return std::find(std::begin(kWords), std::end(kWords), rest) != std::end(kWords);
}

}  // namespace quilp::tmdb
