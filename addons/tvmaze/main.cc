// The add-on that asks TVmaze about shows.

#include "answers.h"
#include "kit/http.h"
#include "kit/titles.h"
#include "kit/values.h"

namespace quilp::tvmaze {
namespace {

using kit::Call;
using kit::Http;
using kit::HttpAnswer;

constexpr kit::Service kService{"tvmaze", "https://api.tvmaze.com", 20, 10};

Http& service() {
  static const kit::Settings settings;
  static Http http(settings, kService);
  return http;
}

kit::HttpRequest request(const std::string& path, const kit::Fields& query) {
  kit::HttpRequest made;
  made.path = path;
  made.query = query;
  return made;
}

HttpAnswer ask(const std::string& path, const kit::Fields& query) {
  return service().get(request(path, query));
}

std::vector<kit::Title> search(const Call& /*call*/, kit::Kind /*kind*/, const kit::Query& query) {
  const HttpAnswer answer = ask("/search/shows", {{"q", query.words}});
  return answer.isFound ? readSearch(answer.body) : std::vector<kit::Title>();
}

/// The service's own identifier; empty for none.
std::string idOf(const std::string& id) {
  const std::string imdb = kit::imdbOf(id);
  if (imdb.empty()) {
    return kit::isNumber(id) ? id : "";
  }
  const HttpAnswer answer = ask("/lookup/shows", {{"imdb", imdb}});
  return answer.isFound ? readShow(answer.body).id : "";
}

kit::Title describe(const Call& call, kit::Kind /*kind*/) {
  const std::string id = idOf(call.id);
  if (id.empty()) {
    return {};
  }
  const HttpAnswer answer = ask(
      "/shows/" + id,
      {{"embed[]", "cast"}, {"embed[]", "crew"}, {"embed[]", "images"}, {"embed[]", "seasons"}});
  return answer.isFound ? readShow(answer.body) : kit::Title();
}

kit::Episode describeEpisode(const Call& call) {
  const std::string id = idOf(call.id);
  if (id.empty()) {
    return {};
  }
  const HttpAnswer answer =
      ask("/shows/" + id + "/episodebynumber",
          {{"season", std::to_string(call.season)}, {"number", std::to_string(call.episode)}});
  return answer.isFound ? readEpisode(answer.body) : kit::Episode();
}

std::string test() { return service().test(request("/search/shows", {{"q", "news"}})); }

}  // namespace
}  // namespace quilp::tvmaze

int main(int argc, char** argv) {
  using namespace quilp::tvmaze;
  return quilp::kit::serveTitles({"tvmaze", false, search, describe, describeEpisode, test}, argc,
                                 argv);
}
