#include "scan/source.h"

#include <cstdlib>
#include <string_view>

#include "libquilp.h"
#include "lookup/requests.h"
#include "plugin/record_table.h"
#include "scan/limited.h"
#include "text/entities.h"
#include "xml/xml_node.h"

namespace quilp {
namespace {

using libquilp::Lookup;
using libquilp::Values;
using libquilp::XMLNode;

std::string orNothing(const char* text) { return text != nullptr ? text : ""; }

std::string textOf(const XMLNode& entry, const char* element) {
  return orNothing(libquilp::firstClear(entry.getChildNode(element)));
}

const char* dateElement(MediaKind kind) {
  return kind == MediaKind::kEpisode ? "first_air_date" : "year";
}

Candidate candidateOf(const XMLNode& entry, MediaKind kind) {
  Candidate candidate{textOf(entry, "id"), libquilp::decoded(textOf(entry, "title")),
                      yearOf(textOf(entry, dateElement(kind)))};
  candidate.votes = std::strtol(textOf(entry, "votes").c_str(), nullptr, 10);
  for (const char* element : {"original_title", "alternative_title"}) {
    entry.forEachChild(element, [&](const XMLNode& title) {
      candidate.otherTitles.push_back(libquilp::decoded(orNothing(libquilp::firstClear(title))));
    });
  }
  return candidate;
}

Candidate candidateOf(const velMovie_& movie) {
  return {orNothing(movie.id), libquilp::decoded(orNothing(movie.title)),
          yearOf(orNothing(movie.year))};
}

Candidate candidateOf(const velTVShow& show) {
  return {orNothing(show.id), libquilp::decoded(orNothing(show.title)),
          yearOf(orNothing(show.first_air_date))};
}

/// The built-in search gives an empty record when the site has no results.
template <class Record>
void takeBuiltIn(const libquilp::ListRequest<Record>& request, const Values& values, Lookup& lookup,
                 Searched& searched) {
  const auto found = request.builtIn(values, lookup.context());
  for (const Record& record : found.records) {
    Candidate candidate = candidateOf(record);
    if (!candidate.title.empty() || !candidate.id.empty()) {
      searched.candidates.push_back(std::move(candidate));
    }
  }
  lookup.conclude(!searched.candidates.empty(), found.reason);
}

}  // namespace

int yearOf(const std::string& date) {
  return static_cast<int>(std::strtol(date.substr(0, 4).c_str(), nullptr, 10));
}

std::string idForLookup(const libquilp::Request& request, const std::string& id) {
  libquilp::Observer quiet;
  return addOnFor(request, libquilp::Use::kRecords, {&quiet}) ? "quilp" + id : id;
}

const libquilp::Request& requestOf(MediaKind kind) {
  switch (kind) {
    case MediaKind::kMovie:
      return libquilp::kMovieSearch;
    case MediaKind::kEpisode:
      return libquilp::kShowSearch;
    case MediaKind::kAlbum:
      return libquilp::kAlbumSearch;
    case MediaKind::kSong:
      break;
  }
  return libquilp::kSong;
}

bool hasAddOn(MediaKind kind) {
  libquilp::Observer quiet;
  return addOnFor(requestOf(kind), libquilp::Use::kRecords, {&quiet}).has_value();
}

Searched searchTitles(MediaKind kind, const std::string& words, int count) {
  const libquilp::Request& request = requestOf(kind);
  const Values values = Values::search(words.c_str(), count);
  Limited limited;
  Searched searched;
  Lookup lookup(request, values, libquilp::Use::kRecords, limited.context(), searched.answer);
  if (!lookup.isBuiltIn()) {
    lookup.document().forEachChild(request.entry, [&](const XMLNode& entry) {
      Candidate candidate = candidateOf(entry, kind);
      if (!candidate.title.empty() && !candidate.id.empty()) {
        searched.candidates.push_back(std::move(candidate));
      }
    });
    lookup.conclude(!searched.candidates.empty());
  } else if (kind == MediaKind::kMovie) {
    takeBuiltIn(libquilp::kMovieSearch, values, lookup, searched);
  } else {
    takeBuiltIn(libquilp::kShowSearch, values, lookup, searched);
  }
  return searched;
}

Described describeTitle(MediaKind kind, const std::string& id) {
  Limited limited;
  Described described;
  described.id = id;
  if (kind == MediaKind::kMovie) {
    libquilp::Owned<velMovieInfo_, velFreeMovieInfo> movie;
    const std::string given = idForLookup(libquilp::kMovieDetails, id);
    described.answer = libquilp::run<velMovieInfo_>(
        libquilp::kMovieDetails, Values::title(given.c_str()), limited.context(), movie);
    described.title = libquilp::decoded(orNothing(movie.title));
    described.date = orNothing(movie.year);
  } else {
    libquilp::Owned<velTVShowInfo, velFreeTVShowInfo> show;
    const std::string given = idForLookup(libquilp::kShowDetails, id);
    described.answer = libquilp::run<velTVShowInfo>(
        libquilp::kShowDetails, Values::title(given.c_str()), limited.context(), show);
    described.title = libquilp::decoded(orNothing(show.title));
    described.date = orNothing(show.first_air_date);
  }
  return described;
}

Described describeEpisode(const std::string& show, int season, int episode) {
  Limited limited;
  Described described;
  libquilp::Owned<velTVEpisode, velFreeTVEpisode> info;
  const std::string given = idForLookup(libquilp::kEpisodeDetails, show);
  described.answer = libquilp::run<velTVEpisode>(
      libquilp::kEpisodeDetails, Values::ofEpisode(given.c_str(), season, episode, nullptr),
      limited.context(), info);
  described.title = libquilp::decoded(orNothing(info.title));
  described.date = orNothing(info.air_date);
  described.id = orNothing(info.id);
  return described;
}

Described describeSong(const std::string& file) {
  Limited limited;
  Described described;
  KTV_ExtraData_t song;
  described.answer = run(libquilp::kSong, Values::song(file.c_str()), limited.context(), song);
  for (const ArtistData_t& artist : song.artists) {
    described.title += (described.title.empty() ? "" : ", ") + artist.name;
  }
  described.title += (described.title.empty() || song.title.empty() ? "" : " - ") + song.title;
  return described;
}

Searched searchAlbums(const std::string& album, const std::string& artist, int count) {
  Limited limited;
  Searched searched;
  auto answer = run(libquilp::kAlbumSearch, Values::ofAlbum(album.c_str(), artist.c_str(), count),
                    limited.context());
  searched.answer = answer;
  for (const velAlbum_& one : answer.found.records) {
    Candidate candidate{"", orNothing(one.name), yearOf(orNothing(one.releasedate))};
    candidate.artist = orNothing(one.artist);
    if (!candidate.title.empty()) {
      searched.candidates.push_back(std::move(candidate));
    }
  }
  return searched;
}

}  // namespace quilp
