#include "movie/search.h"

#include <string>

#include "imdb/title_search.h"

namespace libquilp {
namespace {

const TitleSearch<velMovie_> kMovieSearch = {movieSearchPage,     "fn_tt_tt_1",     &velMovie_::id,
                                             &velMovie_::title,   &velMovie_::year, &velMovie_::url,
                                             &velMovie_::outline, &velFreeMovies};

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

Found<velMovie_> searchMovies(const char* keyword, int count, const Context& context) {
  return searchTitles(kMovieSearch,
                      std::string(IMDB_MAIN_BASE) + "/find?ref_=nv_sr_fn&q=" + keyword + "&s=tt",
                      count, context);
}

RecordArray<velMovie_> readAlternatePage(std::string_view page, int count) {
  RecordArray<velMovie_> movies(&velFreeMovies, count);
  Cutter rows(page);
  while (movies && (movies.count() == 0 || movies.count() < count)) {
    const Cut row = rows.between("<td class=\"number\">", "</tr>");
    if (!row) {
      break;
    }
    readAlternateRow(*row, movies.add());
  }
  return movies;
}

Found<velMovie_> searchAlternateTitles(const char* keyword, int count, const Context& context) {
  const FilePage page =
      fetchToFile(std::string(IMDB_AKAS_BASE) +
                      "/search/title?at=0&sort=moviemeter,asc&start=1&title=" + keyword +
                      "&title_type=feature,video,short",
                  movieSearchPage, context);
  if (page.status != 0) {
    return {};
  }
  const bool hasRows = page.text && !saysNoResults(*page.text);
  return Found<velMovie_>(readAlternatePage(hasRows ? *page.text : std::string_view(), count));
}

}  // namespace libquilp
