#pragma once

#include <string>
#include <vector>

#include "call.h"
#include "records.h"

namespace quilp::kit {

enum class Kind { kMovie, kShow };

/// What a search looks for.
struct Query {
  std::string words{};
  int year = 0;  // 0 for any
  std::size_t count = 0;
};

/// A source of movies or shows. Each function may throw std::exception. What is not found has no
/// title.
struct TitleSource {
  const char* program;
  bool hasMovies;
  std::vector<Title> (*search)(const Call& call, Kind kind, const Query& query);
  Title (*describe)(const Call& call, Kind kind);
  Episode (*describeEpisode)(const Call& call);
  std::string (*test)();  // for "quilp addon test"
};

/// The main function of an add-on for movies, shows or both: serves all verbs by a source.
int serveTitles(const TitleSource& source, int argc, char** argv);

/// A language as "de" or "de-AT", from the call, else from the settings, else "en".
std::string languageOf(const Call& call, const std::string& settings);

/// "de-AT" gives "de" and "AT".
std::string baseOf(const std::string& language);
std::string regionOf(const std::string& language);

}  // namespace quilp::kit
