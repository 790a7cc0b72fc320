#pragma once

#include <optional>
#include <string>

#include "lookup/answer.h"
#include "lookup/request.h"
#include "scan/candidate.h"
#include "scan/item.h"

namespace quilp {

/// The request that a kind of media is searched with.
const libquilp::Request& requestOf(MediaKind kind);

/// Whether an add-on is asked for the kind. Built-in lookups must not overlap.
bool hasAddOn(MediaKind kind);

/// An identifier of a search as the details of a title take it: the library drops five characters
/// from an add-on's.
std::string idForLookup(const libquilp::Request& request, const std::string& id);

/// The year that a date begins with; 0 for none.
int yearOf(const std::string& date);

struct Searched {
  Candidates candidates;
  libquilp::Answer answer;  // why there are none
};

/// Searches movies or shows. Reads more of an add-on's document than the exported functions do:
/// original_title, alternative_title and votes.
Searched searchTitles(MediaKind kind, const std::string& words, int count);

struct Described {
  std::string title;
  std::string date;  // of an episode, or the year
  std::string id;
  libquilp::Answer answer;

  bool found() const { return answer.reason == libquilp::Reason::kOk; }
};

/// The movie or show of an identifier.
Described describeTitle(MediaKind kind, const std::string& id);
Described describeEpisode(const std::string& show, int season, int episode);

/// What the add-on or the file's name tells of a song: artists and title.
Described describeSong(const std::string& file);

/// Albums of a title; their identifier is empty, they have an artist.
Searched searchAlbums(const std::string& album, const std::string& artist, int count);

}  // namespace quilp
