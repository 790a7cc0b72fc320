#include <string>

#include "imdb/title_details.h"
#include "imdb/title_page.h"
#include "platform.h"
#include "plugin/page_fetch.h"
#include "tv/details.h"

namespace libquilp {
namespace {

/// The text from behind `open` to `close`, both searched from the start of `marker`. Where `close`
/// stands first the count wraps around, and the cut runs to the end of the page.
Cut bothBehind(std::string_view page, std::string_view marker, std::string_view open,
               std::string_view close) {
  const std::size_t from = page.find(marker);
  const std::size_t start = page.find(open, from);
  const std::size_t end = page.find(close, from);
  if (start == std::string_view::npos || end == std::string_view::npos) {
    return {};
  }
  return cutAt(page, start + open.size(), end - start - open.size());
}

// <meta property='og:title' content="&quot;SHOW&quot; TITLE (TV Episode 2008)" />
Cut titleOf(std::string_view page) {
  return bothBehind(page, "<meta property='og:title'", "&quot; ", " (");
}

// <meta itemprop="datePublished" content="2008-01-20" />
Cut airDateOf(std::string_view page) {
  return bothBehind(page, "<meta itemprop=\"datePublished\"", "content=\"", "\" />");
}

// <div class="poster"> <a …><img … src="ADDRESS" …></a>
Cut thumbnailOf(std::string_view page) {
  Cutter cutter(page);
  if (!cutter.past("<div class=\"poster\">") || !cutter.past("src=\"")) {
    return {};
  }
  const std::size_t end = cutter.rest().find('"', 1);  // an address has at least one byte
  return end != std::string_view::npos ? Cut(cutter.take(end)) : Cut();
}

// <h4 class="inline">Director:</h4> <span class="itemprop" itemprop="name">DIRECTOR</span> … </div>
Cut directorsOf(std::string_view page) {
  Cutter cutter(page);
  if (!cutter.past("<h4 class=\"inline\">Director")) {
    return {};
  }
  cutter.take(6);  // ":</h4>", also when something else stands there
  return cutter.upTo("</div>");
}

}  // namespace

// <h3 id="episode_top"  itemprop="name">Season 2</h3> …
//   <div class="image"> <a …><div data-const="ID" …><img …><div>S2, Ep5</div></div></a> </div>
//   <div class="info" …> … <hr>
Cut episodeIdOf(std::string_view page, int season, int episode) {
  const std::string key = "S" + std::to_string(season) + ", Ep" + std::to_string(episode);
  Cutter entries(
      Cutter(page).between("<h3 id=\"episode_top\"  itemprop=\"name\">", "<hr>").value_or(""));
  while (const Cut entry = entries.between("<div class=\"image\">", "<div class=\"info")) {
    // Ep1 is also in Ep10, which comes later.
    if (contains(*entry, key)) {
      return Cutter(*entry).between("<div data-const=\"", "\"");
    }
  }
  return {};
}

int imdbGetEpisodeId(const char* showId, int season, int episode, velTVEpisode* info) {
  const FilePage list =
      fetchToFile(std::string(IMDB_MAIN_BASE) + "/title/" + showId +
                      "/episodes?season=" + std::to_string(season) + "&ref_=tt_eps_sn_1",
                  tvShowInfoPage);
  if (!list.text) {
    return 1;
  }
  info->id = duplicate(episodeIdOf(*list.text, season, episode));
  return 0;
}

void readEpisodePage(const std::string& page, int season, int episode, velTVEpisode& info) {
  info.title = duplicate(titleOf(page));
  info.air_date = duplicate(airDateOf(page));
  info.season_number = duplicate(std::to_string(season));
  info.episode_number = duplicate(std::to_string(episode));
  info.outline = duplicate(decodedOutline(page, info.id));
  info.thumbnail = duplicate(thumbnailOf(page));
  appendNames(directorsOf(page).value_or(""), info.directors);
  readGenres(page, info.genres);
  readCast(page, info.actor_names, info.actor_roles);
  info.rating = duplicate(userRatingOf(page));
}

int imdbGetEpisodeInfo(const char* showId, int season, int episode, velTVEpisode* info) {
  if (imdbGetEpisodeId(showId, season, episode, info) != 0 || *orEmpty(info->id) == '\0') {
    return -1;
  }
  const FilePage page = fetchToFile(titleAddress(info->id, kTVReference), tvShowInfoPage);
  if (!page.text) {
    return 1;
  }
  const PipeCollector summaryPipe;
  readEpisodePage(*page.text, season, episode, *info);
  return 0;
}

}  // namespace libquilp
