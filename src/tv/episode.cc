#include <string>

#include "imdb/title_details.h"
#include "imdb/title_page.h"
#include "platform.h"
#include "plugin/page_fetch.h"
#include "tv/details.h"

namespace libquilp {
namespace {

/// The text between `open` and `close`, both searched from the start of `marker`. If `close` comes
/// first, the count wraps around, and the cut reaches to the end of the page.
Cut bothAfter(std::string_view page, std::string_view marker, std::string_view open,
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
  return bothAfter(page, "<meta property='og:title'", "&quot; ", " (");
}

// <meta itemprop="datePublished" content="2008-01-20" />
Cut airDateOf(std::string_view page) {
  return bothAfter(page, "<meta itemprop=\"datePublished\"", "content=\"", "\" />");
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
  cutter.take(6);  // skips ":</h4>", without checking it
  return cutter.upTo("</div>");
}

// <h3 id="episode_top"  itemprop="name">Season 2</h3> …
//   <div class="image"> <a …><div data-const="ID" …><img …><div>S2, Ep5</div></div></a> </div>
//   <div class="info" …> … <hr>
Cut entryOf(std::string_view page, const std::string& key) {
  Cutter entries(
      Cutter(page).between("<h3 id=\"episode_top\"  itemprop=\"name\">", "<hr>").value_or(""));
  while (const Cut entry = entries.between("<div class=\"image\">", "<div class=\"info")) {
    if (contains(*entry, key)) {
      return entry;
    }
  }
  return {};
}

std::string seasonKey(int season) { return "S" + std::to_string(season) + ", Ep"; }

}  // namespace

Cut episodeIdOf(std::string_view page, int season, int episode) {
  // Ep1 is also in Ep10, which comes later.
  const Cut entry = entryOf(page, seasonKey(season) + std::to_string(episode));
  return entry ? Cutter(*entry).between("<div data-const=\"", "\"") : Cut();
}

bool hasSeason(std::string_view page, int season) {
  return entryOf(page, seasonKey(season)).has_value();
}

void readEpisodePage(const std::string& page, int season, int episode,
                     const std::optional<std::string>& outline, velTVEpisode& info) {
  info.title = duplicate(titleOf(page));
  info.air_date = duplicate(airDateOf(page));
  info.season_number = duplicate(std::to_string(season));
  info.episode_number = duplicate(std::to_string(episode));
  info.outline = duplicate(outline);
  info.thumbnail = duplicate(thumbnailOf(page));
  appendNames(directorsOf(page).value_or(""), info.directors);
  readGenres(page, info.genres);
  readCast(page, info.actor_names, info.actor_roles);
  info.rating = duplicate(userRatingOf(page));
}

Outcome fetchEpisode(const char* showId, int season, int episode, const Context& context,
                     velTVEpisode& info) {
  constexpr int kNoEpisode = -1;
  const FilePage list =
      fetchToFile(std::string(IMDB_MAIN_BASE) + "/title/" + showId +
                      "/episodes?season=" + std::to_string(season) + "&ref_=tt_eps_sn_1",
                  tvShowInfoPage, context);
  if (!list.text) {
    return {kNoEpisode, Reason::kNoPage};
  }
  info.id = duplicate(episodeIdOf(*list.text, season, episode));
  if (*orEmpty(info.id) == '\0') {
    return {kNoEpisode,
            hasSeason(*list.text, season) ? Reason::kUnknownEpisode : Reason::kUnknownSeason};
  }
  const FilePage page = fetchToFile(titleAddress(info.id, kTVReference), tvShowInfoPage, context);
  if (!page.text) {
    return {1, Reason::kNoPage};
  }
  readEpisodePage(*page.text, season, episode, fetchOutline(*page.text, info.id, context), info);
  return {};
}

}  // namespace libquilp
