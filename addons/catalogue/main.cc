// The add-on that answers from the offline catalogue.

#include <algorithm>
#include <optional>
#include <string>

#include "kit/serve.h"
#include "kit/settings.h"
#include "name/name.h"
#include "records.h"
#include "search.h"
#include "store.h"

namespace quilp::catalogue {
namespace {

using kit::Call;
using kit::Document;

constexpr double kSimilar = .8;
constexpr int kMostResults = 1000;

/// "en-US" gives "en".
std::string languageOf(const Call& call) {
  std::string language = call.language.substr(0, call.language.find_first_of("-_"));
  for (char& c : language) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
  }
  return language;
}

void write(const Elements& elements, Document& document) {
  for (const Element& element : elements) {
    if (element.elements.empty()) {
      document.value(element.name, element.text);
    } else {
      document.open(element.name);
      write(element.elements, document);
      document.close();
    }
  }
}

/// The user's own words say more than the keyword that was made of them: a year, or numbers that
/// were taken for one.
std::vector<Hit> find(Store& store, const Call& call, Kind kind) {
  Query query;
  query.kind = kind;
  query.count = static_cast<std::size_t>(std::clamp(call.count, 1, kMostResults));
  query.words = call.keyword;
  query.year = call.year > 0 ? static_cast<unsigned>(call.year) : 0;
  if (call.name.empty()) {
    return search(store, query);
  }
  const libquilp::Name name = libquilp::readName(
      call.name, kind == Kind::kShow ? libquilp::NameKind::kEpisode : libquilp::NameKind::kMovie);
  if (query.year == 0 && name.year > 0) {
    query.year = static_cast<unsigned>(name.year);
  }
  if (!name.title.empty()) {
    query.words = name.title;
  }
  std::vector<Hit> hits = search(store, query);
  if (!name.title.empty() && (hits.empty() || hits.front().similarity < kSimilar)) {
    query.words = call.keyword;
    std::vector<Hit> others = search(store, query);
    if (!others.empty() && (hits.empty() || others.front().score > hits.front().score)) {
      return others;
    }
  }
  return hits;
}

bool searchIn(const Call& call, Document& document, Kind kind) {
  Store store(kit::catalogueFile());
  const std::string language = languageOf(call);
  const std::vector<Hit> hits = find(store, call, kind);
  const std::vector<Title> titles = titlesOf(store, hits);
  for (std::size_t i = 0; i < hits.size(); ++i) {
    document.open(kind == Kind::kShow ? "tvshow" : "movie");
    write(kind == Kind::kShow ? showHit(titles[i], language, hits[i].name)
                              : movieHit(titles[i], language, hits[i].name),
          document);
    document.close();
  }
  return true;  // a list without entries is an answer
}

bool searchMovie(const Call& call, Document& document) {
  return searchIn(call, document, Kind::kMovie);
}

bool searchShow(const Call& call, Document& document) {
  return searchIn(call, document, Kind::kShow);
}

std::optional<Title> titleOf(Store& store, const std::string& id, Kind kind) {
  const std::optional<Ident> ident = store.ident(idOf(id));
  if (!ident || ident->isEpisode) {
    return std::nullopt;
  }
  Title title = store.title(ident->rank);
  return title.kind() == kind ? std::optional<Title>(std::move(title)) : std::nullopt;
}

bool describeMovie(const Call& call, Document& document) {
  Store store(kit::catalogueFile());
  const std::optional<Title> title = titleOf(store, call.id, Kind::kMovie);
  if (title) {
    write(movie(store, *title, languageOf(call)), document);
  }
  return title.has_value();
}

bool describeEpisode(Store& store, const Title& title, const Call& call, Document& document) {
  if (call.season < 0 || call.episode < 0) {
    return false;
  }
  const std::optional<Season> season = store.season(title.id, static_cast<unsigned>(call.season));
  if (!season) {
    return false;
  }
  for (const Episode& each : season->episodes) {
    if (each.number == static_cast<unsigned>(call.episode)) {
      write(episode(title, each), document);
      return true;
    }
  }
  return false;
}

bool describeShow(const Call& call, Document& document) {
  Store store(kit::catalogueFile());
  const std::optional<Title> title = titleOf(store, call.id, Kind::kShow);
  if (!title) {
    return false;
  }
  if (call.hasEpisode) {
    return describeEpisode(store, *title, call, document);
  }
  write(show(store, *title, languageOf(call)), document);
  return true;
}

std::string test() { return Store(kit::catalogueFile()).place() + " can be read"; }

}  // namespace
}  // namespace quilp::catalogue

int main(int argc, char** argv) {
  using namespace quilp::catalogue;
  return quilp::kit::serve("catalogue", argc, argv,
                           {{"searchmovie", "movielist", searchMovie},
                            {"getmovieinfobyid", "movie", describeMovie},
                            {"searchtvshow", "tvshowlist", searchShow},
                            {"gettvshowinfo", quilp::kit::showRoot(argc, argv), describeShow}},
                           test);
}
