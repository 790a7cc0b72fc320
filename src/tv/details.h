#pragma once

#include <string>
#include <string_view>

#include "libquilp.h"
#include "text/cutter.h"

namespace libquilp {

inline constexpr char kTVReference[] = "fn_tv_tt_1";

/// The built-in scraper behind velGetTVShowByID: 0, or 1 when the page cannot be had, the record
/// untouched then. The text fields are null before.
int imdbGetTVShowInfo(const char* id, velTVShowInfo* info);

/// Its cuts: fills the record from a show's title page and the picture page it leads to. Throws
/// std::out_of_range for a cast row that is too short.
void readShowPage(const std::string& page, const char* id, velTVShowInfo& info);

/// Address of the banner on a picture page.
Cut bannerOf(std::string_view page);

/// Cuts a role behind its first run of words: "Jane Doe / Narrator" becomes "Jane Doe ".
void cutRole(std::string& role);

/// Finds an episode on the list page of its season and sets its identifier, which stays null when
/// the list does not have it. 0, or 1 when the page cannot be had.
int imdbGetEpisodeId(const char* showId, int season, int episode, velTVEpisode* info);

/// The built-in scraper behind velGetTVEpisode: 0; -1 when the list page cannot be had or does not
/// have the episode, 1 when the episode's page cannot be had. The text fields are null before.
int imdbGetEpisodeInfo(const char* showId, int season, int episode, velTVEpisode* info);

/// Their cuts. The second fills a record whose `id` is set, and throws as readShowPage does.
Cut episodeIdOf(std::string_view page, int season, int episode);
void readEpisodePage(const std::string& page, int season, int episode, velTVEpisode& info);

}  // namespace libquilp
