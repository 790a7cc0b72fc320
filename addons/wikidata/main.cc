// The add-on that asks Wikidata about movies and shows, and Wikipedia for their outlines.

#include <algorithm>
#include <cstdio>

#include "answers.h"
#include "kit/http.h"
#include "kit/values.h"
#include "kit/wikimedia.h"

namespace quilp::wikidata {
namespace {

using kit::Call;
using kit::HttpAnswer;
using kit::Kind;
using kit::Texts;

constexpr kit::Service kWikipedia{"wikipedia", "https://{language}.wikipedia.org", 5, 1, 24 * 3600};
constexpr std::size_t kMostEntities = 50;  // at a time

// Movies and shows: what they are, or identifiers that nothing else has.
constexpr char kMovies[] = "haswbstatement:P31=Q11424|P4947";
constexpr char kShows[] = "haswbstatement:P31=Q5398426|P4983|P8600|P4835";

class Session {
 public:
  explicit Session(const Call& call)
      : wikidata_(settings_, kit::kWikidata),
        wikipedia_(settings_, kWikipedia),
        language_(kit::languageOf(call, wikidata_.language())) {}

  const std::string& language() const { return language_; }

  /// Without an answer, the text is that of one without values.
  std::string ask(const kit::HttpRequest& request) {
    const HttpAnswer answer = wikidata_.get(request);
    return answer.isFound ? answer.body : "{}";
  }

  Texts search(const std::string& words, std::size_t count) {
    return readSearch(ask(kit::wikidataRequest({{"action", "query"},
                                                {"list", "search"},
                                                {"srsearch", words},
                                                {"srlimit", std::to_string(count)}})));
  }

  std::string entities(const Texts& ids, const char* properties) {
    std::string joined;
    for (const std::string& id : ids) {
      joined += (joined.empty() ? "" : "|") + id;
    }
    return ask(kit::wikidataRequest(
        {{"action", "wbgetentities"}, {"ids", joined}, {"props", properties}}));
  }

  std::string entity(const std::string& id) {
    return entities({id}, "labels|descriptions|claims|sitelinks");
  }

  /// The service's own identifier; empty for none.
  std::string idOf(const std::string& id) {
    const std::string imdb = kit::imdbOf(id);
    if (imdb.empty()) {
      return isEntity(id) ? id : "";
    }
    const Texts found = search("haswbstatement:P345=" + imdb, 1);
    return found.empty() ? "" : found[0];
  }

  /// All about an entity.
  kit::Title describe(const std::string& id) {
    Facts facts = readFacts(entity(id), id, language_);
    const Texts ids = entitiesOf(facts);
    if (!ids.empty()) {
      readNames(entities(ids, "labels"), language_, facts);
    }
    addPictures(facts);
    addSummary(facts);
    return std::move(facts.title);
  }

  std::string test() {
    kit::HttpRequest summary;
    summary.language = "en";
    summary.path = "/api/rest_v1/page/summary/Film";
    return wikidata_.test(kit::wikidataRequest({{"action", "wbgetentities"},
                                                {"ids", "Q11424"},
                                                {"props", "labels"},
                                                {"languages", "en"}})) +
           ", " + wikipedia_.test(summary);
  }

 private:
  void addPictures(Facts& facts) {
    Texts files{facts.posterFile, facts.bannerFile};
    files.erase(std::remove(files.begin(), files.end(), ""), files.end());
    if (files.empty()) {
      return;
    }
    const auto pictures = kit::readFiles(ask(kit::filesRequest(files)));
    const auto find = [&pictures](const std::string& file) {
      const auto found = pictures.find(file);
      return found == pictures.end() ? "" : found->second;
    };
    facts.title.poster = find(facts.posterFile);
    facts.title.banner = find(facts.bannerFile);
  }

  /// A summary is a bonus: without one, the description is the outline.
  void addSummary(Facts& facts) {
    for (const Article& article : facts.articles) {
      kit::HttpRequest request;
      request.language = article.language;
      std::string title = article.title;
      std::replace(title.begin(), title.end(), ' ', '_');
      request.path = "/api/rest_v1/page/summary/" + kit::percentEncoded(title);
      try {
        const HttpAnswer answer = wikipedia_.get(request);
        const std::string summary = answer.isFound ? readSummary(answer.body) : "";
        if (!summary.empty()) {
          facts.title.outline = summary;
          return;
        }
      } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "wikidata: no summary: %s\n", error.what());
      }
    }
  }

  kit::Settings settings_{};
  kit::Http wikidata_;
  kit::Http wikipedia_;
  std::string language_;
};

std::vector<kit::Title> search(const Call& call, Kind kind, const kit::Query& query) {
  const std::string words = searchWords(query.words);
  if (words.empty()) {
    return {};
  }
  Session session(call);
  const Texts ids = session.search(words + ' ' + (kind == Kind::kMovie ? kMovies : kShows),
                                   std::min(std::max<std::size_t>(query.count, 10), kMostEntities));
  return ids.empty() ? std::vector<kit::Title>()
                     : readHits(session.entities(ids, "labels|descriptions|aliases|claims"), ids,
                                session.language());
}

kit::Title describe(const Call& call, Kind /*kind*/) {
  Session session(call);
  const std::string id = session.idOf(call.id);
  return id.empty() ? kit::Title() : session.describe(id);
}

kit::Episode describeEpisode(const Call& call) {
  Session session(call);
  const std::string show = session.idOf(call.id);
  const std::string season = show.empty() ? "" : readPart(session.entity(show), show, call.season);
  const std::string id =
      season.empty() ? "" : readPart(session.entity(season), season, call.episode);
  if (id.empty()) {
    return {};
  }
  kit::Title title = session.describe(id);
  kit::Episode episode;
  episode.id = title.id;
  episode.title = title.title;
  episode.date = title.date;
  episode.outline = title.outline;
  episode.directors = std::move(title.directors);
  episode.genres = std::move(title.genres);
  episode.cast = std::move(title.cast);
  return episode;
}

std::string test() { return Session({}).test(); }

}  // namespace
}  // namespace quilp::wikidata

int main(int argc, char** argv) {
  using namespace quilp::wikidata;
  return quilp::kit::serveTitles({"wikidata", true, search, describe, describeEpisode, test}, argc,
                                 argv);
}
