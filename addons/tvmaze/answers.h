#pragma once

#include <string>
#include <vector>

#include "kit/records.h"

// The answers of TVmaze as records. What is missing, null or of another type is empty. Each throws
// std::runtime_error for a text that is no JSON.

namespace quilp::tvmaze {

/// Of /search/shows: the shows, best first.
std::vector<kit::Title> readSearch(const std::string& answer);

/// Of /shows/ID and /lookup/shows: with what is embedded of cast, crew, images and seasons.
kit::Title readShow(const std::string& answer);

/// Of /shows/ID/episodebynumber.
kit::Episode readEpisode(const std::string& answer);

}  // namespace quilp::tvmaze
