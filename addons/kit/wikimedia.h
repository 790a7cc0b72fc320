#pragma once

#include <map>
#include <string>
#include <vector>

#include "http.h"
#include "json.h"

// What add-ons share that ask Wikidata, also about files of Wikimedia Commons, which are under free
// licences.

namespace quilp::kit {

inline constexpr Service kWikidata{"wikidata", "https://www.wikidata.org", 5, 1, 24 * 3600};

/// A request of the interface for programs.
HttpRequest wikidataRequest(const Fields& query);

/// A request for what readFiles() reads, about files as "Ana Quist.jpg".
HttpRequest filesRequest(const std::vector<std::string>& names);

/// The addresses of files' pictures, by their names. A service refuses widths of anyone's own
/// choice, so they are those that it gives.
std::map<std::string, std::string> readFiles(const std::string& answer);

/// The statements about a property of an entity, best rank first: those that have a value and are
/// not deprecated.
std::vector<Json> claimsOf(const Json& entity, const std::string& property);

/// Their values: a text, or an object. The best ones have the best rank of all.
std::vector<Json> valuesOf(const Json& entity, const std::string& property);
std::vector<Json> bestValuesOf(const Json& entity, const std::string& property);

}  // namespace quilp::kit
