#include "titles.h"

#include <algorithm>
#include <cstdlib>

#include "ascii.h"
#include "name/name.h"
#include "serve.h"
#include "values.h"

namespace quilp::kit {
namespace {

constexpr int kMostResults = 100;

/// The user's own words say more than the keyword that was made of them: a year, or numbers that
/// were taken for one.
std::vector<Query> queriesOf(const Call& call, Kind kind) {
  Query query;
  query.count = static_cast<std::size_t>(std::clamp(call.count, 1, kMostResults));
  query.words = call.keyword;
  query.year = std::max(call.year, 0);
  std::vector<Query> queries{query};
  if (!call.name.empty()) {
    const libquilp::Name name = libquilp::readName(
        call.name, kind == Kind::kShow ? libquilp::NameKind::kEpisode : libquilp::NameKind::kMovie);
    queries[0].year = query.year == 0 ? name.year : query.year;
    if (!name.title.empty() && name.title != call.keyword) {
      queries.insert(queries.begin(), queries[0]);
      queries[0].words = name.title;
    }
  }
  return queries;
}

/// Titles of the year first, then those of the year before or after.
void preferYear(std::vector<Title>& titles, int year) {
  std::stable_sort(titles.begin(), titles.end(), [year](const Title& one, const Title& other) {
    const auto distance = [year](const Title& title) {
      return std::min(std::abs(yearOf(title.date) - year), 2);
    };
    return distance(one) < distance(other);
  });
}

bool search(const TitleSource& source, const Call& call, Kind kind, Document& document) {
  for (const Query& query : queriesOf(call, kind)) {
    if (query.words.empty()) {
      continue;
    }
    std::vector<Title> titles = source.search(call, kind, query);
    titles.erase(
        std::remove_if(titles.begin(), titles.end(),
                       [](const Title& title) { return title.id.empty() || title.title.empty(); }),
        titles.end());
    if (query.year > 0) {
      preferYear(titles, query.year);
    }
    titles.resize(std::min(titles.size(), query.count));
    for (const Title& title : titles) {
      kind == Kind::kMovie ? writeMovieHit(title, document) : writeShowHit(title, document);
    }
    if (!titles.empty()) {
      break;
    }
  }
  return true;  // a list without entries is an answer
}

bool describe(const TitleSource& source, const Call& call, Kind kind, Document& document) {
  if (call.id.empty()) {
    return false;
  }
  if (call.hasEpisode) {
    if (call.season < 0 || call.episode < 0) {
      return false;
    }
    const Episode episode = source.describeEpisode(call);
    writeEpisode(episode, document);
    return !episode.title.empty();
  }
  const Title title = source.describe(call, kind);
  kind == Kind::kMovie ? writeMovie(title, document) : writeShow(title, document);
  return !title.title.empty();
}

Verb searchVerb(const TitleSource& source, Kind kind) {
  const bool isMovie = kind == Kind::kMovie;
  return {isMovie ? "searchmovie" : "searchtvshow", isMovie ? "movielist" : "tvshowlist",
          [&source, kind](const Call& call, Document& document) {
            return search(source, call, kind, document);
          }};
}

Verb detailsVerb(const TitleSource& source, Kind kind, const char* root) {
  return {kind == Kind::kMovie ? "getmovieinfobyid" : "gettvshowinfo", root,
          [&source, kind](const Call& call, Document& document) {
            return describe(source, call, kind, document);
          }};
}

}  // namespace

int serveTitles(const TitleSource& source, int argc, char** argv) {
  const std::vector<Verb> shows{searchVerb(source, Kind::kShow),
                                detailsVerb(source, Kind::kShow, showRoot(argc, argv))};
  const std::vector<Verb> movies{searchVerb(source, Kind::kMovie),
                                 detailsVerb(source, Kind::kMovie, "movie")};
  std::vector<Verb> verbs = shows;
  if (source.hasMovies) {
    verbs.insert(verbs.end(), movies.begin(), movies.end());
  }
  return serve(source.program, argc, argv, verbs, source.test);
}

std::string languageOf(const Call& call, const std::string& settings) {
  std::string language = call.language.empty() ? settings : call.language;
  language = language.empty() ? "en" : language;
  const std::size_t mark = std::min(language.find_first_of("-_"), language.size());
  for (std::size_t i = 0; i < language.size(); ++i) {
    const auto byte = static_cast<unsigned char>(language[i]);
    if (i == mark) {
      language[i] = '-';
    } else if (!libquilp::isAlnum(byte)) {
      return "en";  // it becomes a part of addresses
    } else {
      const unsigned char lower = libquilp::toLower(byte);
      language[i] = static_cast<char>(i > mark && lower >= 'a' ? lower - 0x20 : lower);
    }
  }
  return mark == 0 ? "en" : language;
}

std::string baseOf(const std::string& language) { return language.substr(0, language.find('-')); }

std::string regionOf(const std::string& language) {
  const std::size_t mark = language.find('-');
  return mark == std::string::npos ? "" : language.substr(mark + 1);
}

}  // namespace quilp::kit
