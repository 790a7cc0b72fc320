#include "scan/lookup.h"

#include <filesystem>
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

std::string orNothing(const char* text) { return text != nullptr ? text : ""; }

/// A site's title may hold character references.
std::string titleOf(const char* text) { return libquilp::decoded(orNothing(text)); }

Match matchOf(const velMovie_& movie) {
  return {titleOf(movie.title), orNothing(movie.year), orNothing(movie.id)};
}

Match matchOf(const velTVShow& show) {
  return {titleOf(show.title), orNothing(show.first_air_date).substr(0, 4), orNothing(show.id)};
}

const Match& best(const std::vector<Match>& matches, const std::string& name) {
  for (const Match& match : matches) {
    if (match.year.size() == 4 && name.find(match.year) != std::string::npos) {
      return match;
    }
  }
  return matches.front();
}

/// The built-in search gives an empty record when the site has no results: it gives none when it
/// failed.
template <class Record>
void search(const libquilp::ListRequest<Record>& request, const std::string& name, int candidates,
            ScanRow& row) {
  libquilp::Observer quiet;
  const auto answer = run(request, libquilp::Values::search(name.c_str(), candidates), {&quiet});
  row.answer = answer;
  row.failed = answer.found.count <= 0 && (answer.status != 0 || !answer.addOn);
  std::vector<Match> matches;
  for (const Record& record : answer.found.records) {
    Match match = matchOf(record);
    if (!match.title.empty() || !match.id.empty()) {
      matches.push_back(std::move(match));
    }
  }
  if (!matches.empty()) {
    const Match& match = best(matches, name);
    row.match = match.title;
    row.year = match.year;
    row.id = match.id;
  }
}

void describeSong(const std::string& file, ScanRow& row) {
  libquilp::Observer quiet;
  KTV_ExtraData_t song;
  row.answer = run(libquilp::kSong, libquilp::Values::song(file.c_str()), {&quiet}, song);
  row.failed = row.answer.status != 0;
  std::string artists;
  for (const ArtistData_t& artist : song.artists) {
    artists += (artists.empty() ? "" : ", ") + artist.name;
  }
  row.match = artists + (artists.empty() || song.title.empty() ? "" : " - ") + song.title;
}

}  // namespace

const libquilp::Request& requestOf(MediaType type) {
  switch (type) {
    case MediaType::kMovie:
      return libquilp::kMovieSearch;
    case MediaType::kTV:
      return libquilp::kShowSearch;
    case MediaType::kKaraoke:
      break;
  }
  return libquilp::kSong;
}

bool hasAddOn(MediaType type) {
  libquilp::Observer quiet;
  return addOnFor(requestOf(type), libquilp::Use::kRecords, {&quiet}).has_value();
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
  if (type == MediaType::kMovie) {
    search(libquilp::kMovieSearch, name, candidates, row);
  } else {
    search(libquilp::kShowSearch, name, candidates, row);
  }
  return row;
}

}  // namespace quilp
