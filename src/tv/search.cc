#include "tv/search.h"

#include <string>

#include "imdb/enrichment.h"
#include "imdb/title_search.h"
#include "tv/details.h"

namespace libquilp {
namespace {

const TitleSearch<velTVShow> kShowSearch = {tvShowSearchPage,      &velTVShow::id,
                                            &velTVShow::title,     &velTVShow::first_air_date,
                                            &GetTVOutLineAndImage, &velFreeTVShows};

}  // namespace

void* imdbGetTVInfo(void* record) {
  enrichFromTitlePage(*static_cast<MovieWorkRecord*>(record), kTVReference);
  return nullptr;
}

void GetTVOutLineAndImage(velTVShow** shows, int n) {
  enrich(*shows, n, &velTVShow::id, &velTVShow::poster, &velTVShow::outline, &imdbGetTVInfo);
}

int imdbGetTVShows(const char* keyword, int count, velTVShow** shows) {
  return searchTitles(
      kShowSearch, std::string(IMDB_MAIN_BASE) + "/find?q=" + keyword + "&s=tt&ttype=tv&ref_=fn_tv",
      count, shows);
}

}  // namespace libquilp
