#pragma once

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

/// The addresses of files' pictures. A service refuses widths of anyone's own choice, so it is the
/// one that gives them.
std::vector<std::string> readFiles(const std::string& answer);

/// The values of a property of an entity, best rank first: those that are known and not deprecated.
/// A value is what a datavalue has: a text, or an object.
std::vector<Json> valuesOf(const Json& entity, const std::string& property);

}  // namespace quilp::kit
