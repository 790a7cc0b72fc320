#include "scan/lookup.h"

#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include "libquilp.h"
#include "lookup/requests.h"
#include "text/entities.h"

namespace quilp {
namespace {

struct Match {
  std::string title;
  std::string year;
  std::string id;
};

struct Answer {
  std::vector<Match> matches;
  std::string failure;
};

std::string orNothing(const char* text) { return text != nullptr ? text : ""; }

/// A site's title may hold character references.
std::string titleOf(const char* text) { return libquilp::decoded(orNothing(text)); }

Match matchOf(const velMovie_& movie) {
  return {titleOf(movie.title), orNothing(movie.year), orNothing(movie.id)};
}

Match matchOf(const velTVShow& show) {
  return {titleOf(show.title), orNothing(show.first_air_date).substr(0, 4), orNothing(show.id)};
}

/// `search(&records, &error)` as the library's searches are; `release` frees what it gave. The
/// built-in search gives a record also when the site has no results: it gives none when it failed.
template <class Record, class Search>
Answer search(bool byAddOn, Search search, void (*release)(Record*, int)) {
  Record* records = nullptr;
  int error = 0;
  const int count = search(&records, &error);
  const auto free = [release, count](Record* array) { release(array, count); };
  const std::unique_ptr<Record, decltype(free)> owner(records, free);
  Answer answer;
  if (count <= 0) {
    answer.failure = error != 0 ? "the add-on's status is " + std::to_string(error)
                     : byAddOn  ? ""
                                : "the site gave no answer that can be read";
  }
  for (int i = 0; i < count; ++i) {
    Match match = matchOf(records[i]);
    if (!match.title.empty() || !match.id.empty()) {
      answer.matches.push_back(std::move(match));
    }
  }
  return answer;
}

Answer searchTitle(const std::string& name, const Lookup& lookup) {
  if (lookup.type == MediaType::kMovie) {
    return search<velMovie_>(
        lookup.byAddOn,
        [&](velMovie_** movies, int* error) {
          return velSearchMovie(name.c_str(), lookup.candidates, movies, error);
        },
        velFreeMovies);
  }
  return search<velTVShow>(
      lookup.byAddOn,
      [&](velTVShow** shows, int* error) {
        return velSearchTVShows(name.c_str(), lookup.candidates, nullptr, shows, error);
      },
      velFreeTVShows);
}

const Match& best(const std::vector<Match>& matches, const std::string& name) {
  for (const Match& match : matches) {
    if (match.year.size() == 4 && name.find(match.year) != std::string::npos) {
      return match;
    }
  }
  return matches.front();
}

void describeSong(const std::string& file, ScanRow& row) {
  KTV_ExtraData_t song;
  if (velGetKTVInfo(file.c_str(), &song) != 0) {
    row.failure = "the add-on failed";
    return;
  }
  std::string artists;
  for (const ArtistData_t& artist : song.artists) {
    artists += (artists.empty() ? "" : ", ") + artist.name;
  }
  row.match = artists + (artists.empty() || song.title.empty() ? "" : " - ") + song.title;
}

}  // namespace

bool hasAddOn(MediaType type) {
  libquilp::Observer quiet;
  const libquilp::Request& request =
      type == MediaType::kMovie ? static_cast<const libquilp::Request&>(libquilp::kMovieSearch)
      : type == MediaType::kTV  ? static_cast<const libquilp::Request&>(libquilp::kShowSearch)
                                : libquilp::kSong;
  return libquilp::addOnFor(request, libquilp::Use::kRecords, {&quiet}).has_value();
}

ScanRow Lookup::operator()(const std::string& file) const {
  ScanRow row;
  row.file = file;
  const std::string name = std::filesystem::path(file).stem().native();
  if (type == MediaType::kKaraoke) {
    row.keyword = name;
    describeSong(file, row);
    return row;
  }
  row.keyword = ProcessKeyword(name.c_str(), 0);
  Answer answer = searchTitle(name, *this);
  row.failure = std::move(answer.failure);
  if (!answer.matches.empty()) {
    const Match& match = best(answer.matches, name);
    row.match = match.title;
    row.year = match.year;
    row.id = match.id;
  }
  return row;
}

}  // namespace quilp
