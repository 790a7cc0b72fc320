#pragma once

#include <string>
#include <vector>

#include "kit/records.h"
#include "kit/titles.h"

// The answers of TMDB as records. What is missing, null or of another type is empty. Each throws
// std::runtime_error for a text that is no JSON.

namespace quilp::tmdb {

/// How records are wanted.
struct Wanted {
  kit::Kind kind = kit::Kind::kMovie;
  std::string language{};  // "de-AT"
  std::string posterSize{"w500"};
  std::string stillSize{"w300"};
};

/// Of /search: best first. Texts that are not translated come from the same search in English.
std::vector<kit::Title> readSearch(const std::string& answer, const Wanted& wanted,
                                   const std::string& english = "{}");

/// Whether the texts of a search are all in the language that was asked for.
bool isTranslated(const std::string& answer, const Wanted& wanted);

/// Of /movie/ID and /tv/ID, with what is appended of credits, release dates or content ratings,
/// identifiers, images and translations. Each text that is not translated comes from the next
/// language: "de-AT", "de", "en", the original.
kit::Title readTitle(const std::string& answer, const Wanted& wanted);

/// Of /tv/ID/season/N/episode/M, in the same way. "Episode 5" counts as not translated.
kit::Episode readEpisode(const std::string& answer, const Wanted& wanted);

/// Of /find: the identifier of the first movie or show; empty for none.
std::string readFound(const std::string& answer, kit::Kind kind);

/// Whether a name only says which number the episode has, in any language.
bool isPlaceholder(const std::string& name, const std::string& number);

}  // namespace quilp::tmdb
