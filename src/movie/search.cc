#include "movie/search.h"

#include <string>

#include "imdb/enrichment.h"
#include "imdb/title_search.h"

namespace libquilp {
namespace {

const TitleSearch<velMovie_> kMovieSearch = {movieSearchPage, &velMovie_::id, &velMovie_::title,
                                             &velMovie_::year, &TestGetOutLineAndImage};

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

int readAlternatePage(std::string_view page, int count, velMovie_* movies) {
  Cutter rows(page);
  int n = 0;
  while (n == 0 || n < count) {
    const Cut row = rows.between("<td class=\"number\">", "</tr>");
    if (!row) {
      break;
    }
    readAlternateRow(*row, movies[n++]);
  }
  return n;
}

}  // namespace libquilp

int imdbBasicGetMovies(const char* keyword, int count, velMovie_** movies) {
  using namespace libquilp;
  keyword = orEmpty(keyword);
  return searchTitles(kMovieSearch,
                      std::string(IMDB_MAIN_BASE) + "/find?ref_=nv_sr_fn&q=" + keyword + "&s=tt",
                      count, movies);
}

int imdbGetMovies(const char* keyword, int count, velMovie_** movies) {
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
  *movies = allocateRecords<velMovie_>(count);
  if (*movies == nullptr || !page.text || saysNoResults(*page.text)) {
    return 0;
  }
  return readAlternatePage(*page.text, count, *movies);
}
