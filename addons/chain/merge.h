#pragma once

#include <string>
#include <vector>

#include "element.h"

namespace quilp::chain {

/// What one source answered.
struct Answer {
  std::string source;
  Elements elements;
};

/// Results of several sources as one list: the same title, or album, is one result, which has what
/// the first source says and what only others say. What several sources rank high comes first. Ids
/// begin with the name of their source: "tmdb:603".
Elements mergeLists(const std::vector<Answer>& answers, const std::string& entry, std::size_t most);

/// Details of one title: what the first answer does not have comes from the others.
Elements mergeDetails(const std::vector<Answer>& answers);

/// The title's identifier at IMDb, as details or results tell it; empty if they do not.
std::string imdbOf(const Elements& elements);

/// "imdb:tt0000001" and "tt0000001" give "tt0000001"; anything else is empty.
std::string imdbOf(const std::string& id);

}  // namespace quilp::chain
