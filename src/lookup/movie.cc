#include "lookup/requests.h"
#include "movie/details.h"
#include "movie/records.h"
#include "movie/search.h"

namespace libquilp {
namespace {

constexpr Option kSearchOptions[] = {{"-t", Value::kKeyword}, {"-n", Value::kCount}};
constexpr Option kDetailsOptions[] = {{"-i", Value::kId}};

/// A search that no add-on answers, of an encoded keyword.
int searchBuiltIn(Found<velMovie_> (*find)(const char*, int, const Context&), const char* keyword,
                  int count, velMovie_** movies) try {
  return movies != nullptr ? find(orEmpty(keyword), count, Context()).giveTo(movies) : 0;
} catch (const std::bad_alloc&) {
  return 0;
}

}  // namespace

constexpr ListRequest<velMovie_> kMovieSearch = {
    {"movie search", kMovieMedia, "searchmovie", kSearchOptions, "movielist", "movie", false, false,
     &listElements<velMovie_>, &printList<velMovie_>},
    kMovieFields,
    kMovieFields,
    nullptr,
    &velFreeMovies,
    [](const Values& values, const Context& context) {
      return searchMovies(ProcessKeyword(values.keyword, 1).c_str(), values.count, context);
    }};

constexpr RecordRequest<velMovieInfo_> kMovieDetails = {
    {"movie show", kMovieMedia, "getmovieinfobyid", kDetailsOptions, "movie", nullptr, false, false,
     &recordElements<velMovieInfo_>, &printRecord<velMovieInfo_>},
    kMovieInfoFields,
    kPrintedMovieInfoFields,
    [](velMovieInfo_& info) { clearTexts<velMovieInfo_>(kMovieInfoFields, info); },
    [](const XMLNode& root, const Values&, velMovieInfo_& info) {
      readRecord<velMovieInfo_>(root, kMovieInfoFields, info);
    },
    [](const Values& values, const Context& context, velMovieInfo_& info) {
      return fetchMovie(values.id, context, info);
    },
    nullptr,
    &tellsAnything<velMovieInfo_>,
    &velFreeMovieInfo};

}  // namespace libquilp

using namespace libquilp;

int velSearchMovie(const char* keyword, int count, velMovie_** movies, int* error) {
  return search(kMovieSearch, Values::search(keyword, count), movies, error);
}

int velPrintSearchMovie(const char* keyword, int count) {
  const auto answer = kMovieSearch.print(kMovieSearch, Values::search(keyword, count), Context());
  return writeOut(answer) ? 0 : answer.status;
}

int velGetMovieByID(const char* id, velMovieInfo_* info) {
  return fill(kMovieDetails, Values::title(orEmpty(id)), info);
}

int velPrintMovieByID(const char* id) {
  const auto answer = kMovieDetails.print(kMovieDetails, Values::title(orEmpty(id)), Context());
  return writeOut(answer) ? 0 : 1;
}

int imdbBasicGetMovies(const char* keyword, int count, velMovie_** movies) {
  return searchBuiltIn(&searchMovies, keyword, count, movies);
}

int imdbGetMovies(const char* keyword, int count, velMovie_** movies) {
  return searchBuiltIn(&searchAlternateTitles, keyword, count, movies);
}

int imdbGetMovieInfo(const char* id, velMovieInfo_* info) try {
  return info != nullptr ? fetchMovie(orEmpty(id), Context(), *info).status : 1;
} catch (const std::bad_alloc&) {
  return 1;
}
