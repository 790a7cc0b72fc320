// The add-on that asks TMDB about movies and shows.

#include <algorithm>
#include <stdexcept>

#include "answers.h"
#include "kit/http.h"
#include "kit/values.h"

namespace quilp::tmdb {
namespace {

using kit::Call;
using kit::HttpAnswer;
using kit::Kind;

constexpr char kSection[] = "tmdb";
constexpr kit::Service kService{kSection, "https://api.themoviedb.org/3", 30, 1, 6 * 3600};

class Session {
 public:
  explicit Session(const Call& call, Kind kind) : http_(settings_, kService) {
    http_.requireKey();
    wanted_.kind = kind;
    wanted_.language = kit::languageOf(call, http_.language());
    wanted_.posterSize = size("poster_size", wanted_.posterSize);
    wanted_.stillSize = size("still_size", wanted_.stillSize);
  }

  const Wanted& wanted() const { return wanted_; }

  kit::HttpRequest request(const std::string& path, const kit::Fields& query) const {
    kit::HttpRequest made;
    made.path = path;
    made.query = query;
    // The short key is a part of the query, the long one is a token.
    if (http_.key().find('.') == std::string::npos) {
      made.secretQuery = {{"api_key", http_.key()}};
    } else {
      made.secretHeaders = {{"Authorization", "Bearer " + http_.key()}};
    }
    return made;
  }

  HttpAnswer ask(const std::string& path, const kit::Fields& query) {
    return http_.get(request(path, query));
  }

  std::string test() { return http_.test(request("/configuration", {})); }

  /// The service's own identifier; empty for none.
  std::string idOf(const std::string& id) {
    const std::string imdb = kit::imdbOf(id);
    if (imdb.empty()) {
      return kit::isNumber(id) ? id : "";
    }
    const HttpAnswer answer = ask("/find/" + imdb, {{"external_source", "imdb_id"}});
    const std::string found = answer.isFound ? readFound(answer.body, wanted_.kind) : "";
    return kit::isNumber(found) ? found : "";
  }

 private:
  std::string size(const char* key, const std::string& usual) const {
    std::string size = settings_.get(kSection, key, usual);
    if (size != "original" &&
        !(size.size() > 1 && size[0] == 'w' && kit::isNumber(size.substr(1)))) {
      throw std::runtime_error(std::string("[tmdb] ") + key + ": no size, as w500 or original is");
    }
    return size;
  }

  kit::Settings settings_{};
  kit::Http http_;
  Wanted wanted_{};
};

const char* folderOf(Kind kind) { return kind == Kind::kMovie ? "/movie" : "/tv"; }

std::vector<kit::Title> searchIn(Session& session, const kit::Query& query, int year) {
  const Wanted& wanted = session.wanted();
  const std::string path = std::string("/search") + folderOf(wanted.kind);
  kit::Fields fields{{"query", query.words}, {"include_adult", "false"}};
  if (year > 0) {
    fields.emplace_back(wanted.kind == Kind::kMovie ? "year" : "first_air_date_year",
                        std::to_string(year));
  }
  const auto in = [&](const std::string& language) {
    kit::Fields all = fields;
    all.emplace_back("language", language);
    const HttpAnswer answer = session.ask(path, all);
    return answer.isFound ? answer.body : "{}";
  };
  const std::string answer = in(wanted.language);
  std::vector<kit::Title> titles = readSearch(answer, wanted);
  const bool isWhole = kit::baseOf(wanted.language) == "en" || isTranslated(answer, wanted);
  return isWhole ? titles : readSearch(answer, wanted, in("en-US"));
}

std::vector<kit::Title> search(const Call& call, Kind kind, const kit::Query& query) {
  Session session(call, kind);
  std::vector<kit::Title> titles = searchIn(session, query, query.year);
  // Sources differ by a year.
  return titles.empty() && query.year > 0 ? searchIn(session, query, 0) : titles;
}

kit::Title describe(const Call& call, Kind kind) {
  Session session(call, kind);
  const std::string id = session.idOf(call.id);
  if (id.empty()) {
    return {};
  }
  const std::string language = session.wanted().language;
  const std::string own = kind == Kind::kMovie ? "release_dates" : "content_ratings";
  const HttpAnswer answer =
      session.ask(folderOf(kind) + ('/' + id),
                  {{"language", language},
                   {"append_to_response", own + ",credits,external_ids,images,translations"},
                   {"include_image_language", kit::baseOf(language) + ",en,null"}});
  return answer.isFound ? readTitle(answer.body, session.wanted()) : kit::Title();
}

kit::Episode describeEpisode(const Call& call) {
  Session session(call, Kind::kShow);
  const std::string id = session.idOf(call.id);
  if (id.empty()) {
    return {};
  }
  const HttpAnswer answer = session.ask(
      "/tv/" + id + "/season/" + std::to_string(call.season) + "/episode/" +
          std::to_string(call.episode),
      {{"language", session.wanted().language}, {"append_to_response", "credits,translations"}});
  return answer.isFound ? readEpisode(answer.body, session.wanted()) : kit::Episode();
}

std::string test() { return Session({}, Kind::kMovie).test(); }

}  // namespace
}  // namespace quilp::tmdb

int main(int argc, char** argv) {
  using namespace quilp::tmdb;
  return quilp::kit::serveTitles({"tmdb", true, search, describe, describeEpisode, test}, argc,
                                 argv);
}
