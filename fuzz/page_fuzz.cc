#include <stdexcept>

#include "fake_client.h"
#include "fuzz.h"
#include "imdb/enrichment.h"
#include "imdb/title_page.h"
#include "libquilp.h"
#include "movie/search.h"
#include "plugin/page_fetch.h"
#include "plugin/records.h"
#include "text/entities.h"
#include "tv/details.h"
#include "tv/search.h"

// Cuts any bytes as a page of the one kind that QUILP_FUZZ_PAGE names; whatever else is fetched for
// it is the same page. Runs in the box.

namespace {

using namespace libquilp;

enum class Page { find, title, combined, alternate, show, episodes, episode };

constexpr int kCount = 3;
constexpr char kId[] = "tt1";

using MovieInfo = Owned<velMovieInfo_, velFreeMovieInfo>;
using ShowInfo = Owned<velTVShowInfo, velFreeTVShowInfo>;
using Episode = Owned<velTVEpisode, velFreeTVEpisode>;

void runFind() {
  velMovie_* movies = nullptr;
  const int movieCount = imdbBasicGetMovies("word", kCount, &movies);
  velFreeMovies(movies, movieCount);
  velTVShow* shows = nullptr;
  const int showCount = searchShows("word", kCount, Context()).giveTo(&shows);
  velFreeTVShows(shows, showCount);
  fuzz::expect(movieCount == showCount && movieCount <= kCount, "a find page has too many results");
}

void runAlternate() {
  velMovie_* movies = nullptr;
  const int count = imdbGetMovies("word", kCount, &movies);
  fuzz::expect(count <= kCount, "a page of the alternate search has too many results");
  velFreeMovies(movies, count);
}

void removeAgainAndAgain(std::string& text, const std::string& open, const std::string& close) {
  for (;;) {
    const std::size_t start = text.find(open);
    const std::size_t end =
        start != std::string::npos ? text.find(close, start + open.size()) : start;
    if (end == std::string::npos) {
      return;
    }
    text.erase(start, end + close.size() - start);
  }
}

std::string between(const std::string& text, const std::string& open, const std::string& close) {
  const std::size_t start = text.find(open);
  const std::size_t end =
      start != std::string::npos ? text.find(close, start + open.size()) : start;
  return end != std::string::npos ? text.substr(start + open.size(), end - start - open.size())
                                  : "";
}

std::string modelOutline(const std::string& page) {
  std::string text =
      between(page, "<div class=\"summary_text\" itemprop=\"description\">", "</div>");
  const auto has = [&text](const char* part) { return text.find(part) != std::string::npos; };
  if (has("<a") && text.find('>', text.find("<a")) != std::string::npos) {
    removeAgainAndAgain(text, "<a", ">");
    removeAgainAndAgain(text, "</a>", "");
    if (has("Add a Plot")) {
      text.clear();
    } else if (has("See full summary")) {
      text = between(page, "class=\"plotSummary\">", "</p>");
      text = has("It looks like we don't have any Plot Summary for this title yet.") ? "" : text;
    } else if (has("See full synopsis")) {
      text.erase(text.find("See full synopsis"));
    }
  } else if (has("Plot is unknown") || has("The plot is unknown")) {
    text.clear();
  }
  removeAgainAndAgain(text, "\n", "");
  return removeEmptyChar(text);
}

void runTitle(const std::string& page) {
  if (page.size() <= fuzz::kLongestModelled && page.find('\0') == std::string::npos) {
    const auto outline = fetchOutline(page, kId, Context());
    const std::string model = decoded(modelOutline(page));
    fuzz::expectText("the outline", outline.value_or(""),
                     model.find_first_not_of(' ') != std::string::npos ? model : "");
  }
  MovieWorkRecord record = {};
  record.id[0] = '1';
  record.reference = "x";
  const Context context;
  record.context = &context;
  enrichFromTitlePage(&record);
}

void runEpisode(const std::string& page) {
  Episode episode;
  episode.id = strdup(kId);
  readEpisodePage(page, 1, 2, fetchOutline(page, kId, Context()), episode);
  fuzz::expect(episode.actor_roles.size() <= episode.actor_names.size(), "a role has no actor");
}

void run(Page kind, const std::string& page) {
  switch (kind) {
    case Page::find:
      return runFind();
    case Page::title:
      return runTitle(page);
    case Page::combined: {
      MovieInfo info;
      imdbGetMovieInfo(kId, &info);
      return fuzz::expect(info.role.size() <= info.actor.size(), "a role has no actor");
    }
    case Page::alternate:
      return runAlternate();
    case Page::show: {
      ShowInfo info;
      fetchShow(kId, Context(), info);
      return fuzz::expect(info.actor_roles.size() <= info.actor_names.size(),
                          "a role has no actor");
    }
    case Page::episodes: {
      Episode episode;
      fetchEpisode(kId, 1, 2, Context(), episode);
      return;
    }
    case Page::episode:
      return runEpisode(page);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string page = fuzz::bytesOf(data, size);
  const fuzz::FakeClient client([&page](const std::string&) -> std::string_view { return page; });
  try {
    run(Page::QUILP_FUZZ_PAGE, page);
  } catch (const std::out_of_range&) {
    // What the record holds by then is released all the same.
  }
  return 0;
}
