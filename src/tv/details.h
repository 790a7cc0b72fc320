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

/// The built-in scraper of a show: status 0, or 1 when the page cannot be had, the record untouched
/// then. The text fields are null before. Throws as readShowPage.
Outcome fetchShow(const char* id, const Context& context, velTVShowInfo& info);

/// What stands on other pages than the title page.
struct FetchedTexts {
  std::optional<std::string> banner;
  std::optional<std::string> outline;
};

/// Fills the record from a show's title page. Throws std::out_of_range for a cast row that is too
/// short; the record holds the fields before the cast then.
void readShowPage(const std::string& page, const char* id, const FetchedTexts& fetched,
                  velTVShowInfo& info);

/// Path of the first picture page that a show's title page leads to.
Cut firstPicturePathOf(std::string_view page);

/// Address of the banner on a picture page.
Cut bannerOf(std::string_view page);

/// Cuts a role after its first run of words: "Jane Doe / Narrator" becomes "Jane Doe ".
void cutRole(std::string& role);

/// The built-in scraper of an episode: status 0; -1 when the list page cannot be had or does not
/// have the episode, 1 when the episode's page cannot be had. The text fields are null before.
/// Throws as readEpisodePage.
Outcome fetchEpisode(const char* showId, int season, int episode, const Context& context,
                     velTVEpisode& info);

/// Identifier of an episode on the list page of its season; none when the list does not have it.
Cut episodeIdOf(std::string_view page, int season, int episode);

/// Whether a list page has any episode of the season.
bool hasSeason(std::string_view page, int season);

/// Fills a record, whose `id` is set, from an episode's title page. Throws as readShowPage.
void readEpisodePage(const std::string& page, int season, int episode,
                     const std::optional<std::string>& outline, velTVEpisode& info);

}  // namespace libquilp
