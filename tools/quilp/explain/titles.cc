#include "explain/search.h"
#include "explain/steps.h"
#include "libquilp.h"
#include "movie/records.h"
#include "output/exit_status.h"
#include "platform.h"
#include "tv/records.h"

// Print functions of movies and shows print what the record functions return.

namespace quilp {
namespace {

using libquilp::Decimal;
using libquilp::ShellCall;

Explanation explanationFor(const std::string& keyword) {
  Explanation explanation;
  explanation.keyword = {ProcessKeyword(keyword.c_str(), 0), ProcessKeyword(keyword.c_str(), 1)};
  return explanation;
}

/// What is there to tell once there are rows, or none.
void conclude(bool found, const char* page, Explanation& explanation) {
  if (found) {
    return;
  }
  if (!explanation.section) {
    explanation.reason = reasonOfFindPage(explanation.transfers, page);
    // The library gives an empty record for a page that it cannot use.
    if (explanation.reason->code != std::string("empty-rows")) {
      explanation.rows = 0;
    }
  } else if (!explanation.reason) {
    explanation.reason = reasonOfEntries(explanation.rows);
  }
  const int status = explanation.shellStatus.value_or(0);
  explanation.searchStatus = status != 0 ? status : kNothingFound;
}

}  // namespace

Explanation explainMovies(const std::string& keyword, int count) {
  Explanation explanation = explanationFor(keyword);
  const RegistryView& registry = RegistryView::get();
  Rows<velMovie_, velFreeMovies> movies;
  if (const auto* section = registry.serving(kMovie, Use::kPrint)) {
    ShellCall shell(kMovie.type);
    runAddOn(*section, shell,
             {"searchmovie", "-t", explanation.keyword->words.c_str(), "-n", Decimal(count)},
             "movielist", explanation);
    if (!explanation.reason) {
      movies.count = libquilp::readRecords(shell.document("movielist"), "movie",
                                           libquilp::kMovieFields, &velFreeMovies, &movies.records);
    }
  } else {
    explanation.whyBuiltIn = registry.whyNone(kMovie, Use::kPrint);
    TransferLog log(TransferLog::Source::kPages);
    int error = 0;
    movies.count = velSearchMovie(keyword.c_str(), count, &movies.records, &error);
    explanation.transfers = log.take();
  }
  conclude(countFields(libquilp::kMovieFields, movies.records, movies.count, explanation),
           libquilp::kMovieSearchPage, explanation);
  return explanation;
}

Explanation explainShows(const std::string& keyword, int count, const std::string& language) {
  Explanation explanation = explanationFor(keyword);
  const RegistryView& registry = RegistryView::get();
  Rows<velTVShow, velFreeTVShows> shows;
  const char* lang = language.empty() ? nullptr : language.c_str();
  if (const auto* section = registry.serving(kTV, Use::kPrint)) {
    ShellCall shell(kTV.type);
    if (lang == nullptr) {
      getDefaultLang(&lang, shell.shell());
    }
    runAddOn(*section, shell,
             {"searchtvshow", "-t", explanation.keyword->words.c_str(), "-n", Decimal(count), "-l",
              lang},
             "tvshowlist", explanation);
    if (!explanation.reason) {
      shows.count = libquilp::readRecords(shell.document("tvshowlist"), "tvshow",
                                          libquilp::kShowFields, &velFreeTVShows, &shows.records);
    }
  } else {
    explanation.whyBuiltIn = registry.whyNone(kTV, Use::kPrint);
    TransferLog log(TransferLog::Source::kPages);
    int error = 0;
    shows.count = velSearchTVShows(keyword.c_str(), count, lang, &shows.records, &error);
    explanation.transfers = log.take();
  }
  conclude(countFields(libquilp::kPrintedShowFields, shows.records, shows.count, explanation),
           libquilp::kTVShowSearchPage, explanation);
  return explanation;
}

}  // namespace quilp
