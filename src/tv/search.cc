#include "tv/search.h"

#include <string>

#include "imdb/title_search.h"
#include "tv/details.h"

namespace libquilp {
namespace {

const TitleSearch<velTVShow> kShowSearch = {
    tvShowSearchPage,           kTVReference,       &velTVShow::id,      &velTVShow::title,
    &velTVShow::first_air_date, &velTVShow::poster, &velTVShow::outline, &velFreeTVShows};

}  // namespace

Found<velTVShow> searchShows(const char* keyword, int count, const Context& context) {
  return searchTitles(
      kShowSearch, std::string(IMDB_MAIN_BASE) + "/find?q=" + keyword + "&s=tt&ttype=tv&ref_=fn_tv",
      count, context);
}

}  // namespace libquilp
