#include "movie/search.h"

#include <new>
#include <string>

#include "imdb/enrichment.h"
#include "imdb/title_search.h"

namespace libquilp {
namespace {

const TitleSearch<velMovie_> kMovieSearch = {movieSearchPage,         &velMovie_::id,
                                             &velMovie_::title,       &velMovie_::year,
                                             &TestGetOutLineAndImage, &velFreeMovies};

// <td class="number">…<img src="URL" …>…<a href="/title/ID/">TITLE</a>
//   <span class="year_type">(YEAR)</span>…<span class="outline">OUTLINE</span>…</tr>
void readAlternateRow(std::string_view text, velMovie_& movie) {
  Cutter row(text);
  movie.url = duplicate(row.between("<img src=\"", "\""));
  const Cut id = row.between("/title/", "/\">");
  movie.id = duplicate(id);
  if (const Cut title = id ? row.upTo("</a>") : Cut()) {
    std::string cleaned(*title);
    replace_string(&cleaned);
    movie.title = duplicate(cleaned);
  }
  if (row.past("<span class=\"year_type\">(")) {
    movie.year = duplicate(Cutter(row).take(4));
  }
  movie.outline = duplicate(row.between("<span class=\"outline\">", "</span>"));
}

}  // namespace

void* imdbGetBasicMovieInfo(void* record) {
  enrichFromTitlePage(*static_cast<MovieWorkRecord*>(record), "fn_tt_tt_1");
  return nullptr;
}

void TestGetOutLineAndImage(velMovie_** movies, int n) {
  enrich(*movies, n, &velMovie_::id, &velMovie_::url, &velMovie_::outline, &imdbGetBasicMovieInfo);
}

void readAlternatePage(std::string_view page, int count, RecordArray<velMovie_>& movies) {
  Cutter rows(page);
  while (movies.count() == 0 || movies.count() < count) {
    const Cut row = rows.between("<td class=\"number\">", "</tr>");
    if (!row) {
      break;
    }
    readAlternateRow(*row, movies.add());
  }
}

}  // namespace libquilp

int imdbBasicGetMovies(const char* keyword, int count, velMovie_** movies) try {
  using namespace libquilp;
  keyword = orEmpty(keyword);
  return searchTitles(kMovieSearch,
                      std::string(IMDB_MAIN_BASE) + "/find?ref_=nv_sr_fn&q=" + keyword + "&s=tt",
                      count, movies);
} catch (const std::bad_alloc&) {
  return 0;
}

int imdbGetMovies(const char* keyword, int count, velMovie_** movies) try {
  using namespace libquilp;
  keyword = orEmpty(keyword);
  const FilePage page =
      fetchToFile(std::string(IMDB_AKAS_BASE) +
                      "/search/title?at=0&sort=moviemeter,asc&start=1&title=" + keyword +
                      "&title_type=feature,video,short",
                  movieSearchPage);
  if (page.status != 0) {
    return 0;
  }
  RecordArray<velMovie_> array(&velFreeMovies, count);
  if (array && page.text && !saysNoResults(*page.text)) {
    readAlternatePage(*page.text, count, array);
  }
  return array.giveTo(movies);
} catch (const std::bad_alloc&) {
  return 0;
}
