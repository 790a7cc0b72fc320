#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "libquilp.h"
#include "plugin/observer.h"
#include "plugin/records.h"
#include "text/cutter.h"

namespace libquilp {

inline constexpr char kTVReference[] = "fn_tv_tt_1";

/// The built-in scraper of a show. Status 0, or 1 if the page cannot be fetched; the record then
/// stays untouched. Requires null text fields. Throws like readShowPage.
Outcome fetchShow(const char* id, const Context& context, velTVShowInfo& info);

/// Fields of a show that are on other pages than the title page.
struct FetchedTexts {
  std::optional<std::string> banner;
  std::optional<std::string> outline;
};

/// Fills the record from a show's title page. Throws std::out_of_range for a cast row that is too
/// short; the record then holds the fields before the cast.
void readShowPage(const std::string& page, const char* id, const FetchedTexts& fetched,
                  velTVShowInfo& info);

/// Path of the first picture page that a show's title page leads to.
Cut firstPicturePathOf(std::string_view page);

/// Address of the banner on a picture page.
Cut bannerOf(std::string_view page);

/// Cuts a role after its first run of words: "Jane Doe / Narrator" becomes "Jane Doe ".
void cutRole(std::string& role);

/// The built-in scraper of an episode. Status 0; -1 if the list page cannot be fetched or lacks the
/// episode; 1 if the episode's page cannot be fetched. Requires null text fields. Throws like
/// readEpisodePage.
Outcome fetchEpisode(const char* showId, int season, int episode, const Context& context,
                     velTVEpisode& info);

/// Identifier of an episode on the list page of its season; no value if the list lacks it.
Cut episodeIdOf(std::string_view page, int season, int episode);

/// Whether a list page has any episode of the season.
bool hasSeason(std::string_view page, int season);

/// Fills a record from an episode's title page. Requires `id` to be set. Throws like readShowPage.
void readEpisodePage(const std::string& page, int season, int episode,
                     const std::optional<std::string>& outline, velTVEpisode& info);

}  // namespace libquilp
