// The add-on that asks others and makes one answer of theirs.

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "kit/serve.h"
#include "kit/settings.h"
#include "merge.h"
#include "run.h"

namespace quilp::chain {
namespace {

using kit::Call;
using kit::Document;
using Clock = std::chrono::steady_clock;

constexpr char kUsualMovies[] = "catalogue tmdb wikidata";
constexpr char kUsualShows[] = "catalogue tvmaze tmdb";
constexpr char kUsualMusic[] = "musicbrainz";
constexpr char kUsualTimeout[] = "15";
constexpr char kInside[] = "QUILP_CHAIN";  // in the environment of the add-ons that are asked
constexpr int kMostResults = 1000;

/// The command line without the file of the document.
std::vector<std::string> arguments;

/// Stock add-ons are beside this one.
std::string ownFolder() {
  std::array<char, 4096> path = {};
  const ssize_t size = readlink("/proc/self/exe", path.data(), path.size());
  const std::string own(path.data(), size < 0 ? 0 : static_cast<std::size_t>(size));
  return own.substr(0, own.rfind('/') + 1);
}

/// "/opt/lamp.sh" gives "lamp".
std::string nameOf(const std::string& program) {
  const std::string file = program.substr(program.rfind('/') + 1);
  return file.substr(0, file.find('.'));
}

/// What is asked, in its order, and until when.
struct Sources {
  explicit Sources(const char* type, const char* usual) {
    if (std::getenv(kInside) != nullptr) {
      throw std::runtime_error("a chain cannot be part of a chain");
    }
    setenv(kInside, "1", 1);
    const kit::Settings settings;
    std::istringstream words(settings.get("chain", type, usual));
    std::set<std::string> names;
    for (std::string word; words >> word;) {
      const bool isPath = word.find('/') != std::string::npos;
      list.push_back({isPath ? nameOf(word) : word, isPath ? word : ownFolder() + word});
      if (!names.insert(list.back().name).second) {
        throw std::runtime_error(std::string("[chain] ") + type + ": two add-ons named " +
                                 list.back().name);
      }
    }
    const std::string text = settings.get("chain", "timeout", kUsualTimeout);
    const double seconds = std::strtod(text.c_str(), nullptr);
    if (!(seconds > 0 && seconds <= 600)) {
      throw std::runtime_error("[chain] timeout: no number of seconds up to 600");
    }
    end = Clock::now() + std::chrono::milliseconds(static_cast<long>(seconds * 1000));
  }

  std::vector<Source> list{};
  Clock::time_point end{};
};

/// The same call with another id.
std::vector<std::string> withId(const std::string& id) {
  std::vector<std::string> changed = arguments;
  for (std::size_t i = 1; i + 1 < changed.size(); i += 2) {
    if (changed[i] == "-i") {
      changed[i + 1] = id;
    }
  }
  return changed;
}

/// Those that answer, in the order of the questions. Tells which do not.
std::vector<Answer> answersTo(std::vector<Question> questions, Clock::time_point end) {
  ask(questions, end);
  std::vector<Answer> answers;
  for (Question& question : questions) {
    if (question.answer) {
      answers.push_back({question.source->name, std::move(*question.answer)});
    } else {
      std::fprintf(stderr, "chain: %s: %s\n", question.source->name.c_str(), question.why.c_str());
    }
  }
  return answers;
}

/// What a source tells of an episode's show is of use for the identifier that others know, too.
std::string imdbOfShow(const Source& source, const std::string& id, Clock::time_point end) {
  std::vector<std::string> call = {arguments[0]};
  for (std::size_t i = 1; i + 1 < arguments.size(); i += 2) {
    if (arguments[i] != "-s" && arguments[i] != "-e") {
      call.insert(call.end(), {arguments[i], arguments[i] == "-i" ? id : arguments[i + 1]});
    }
  }
  const std::vector<Answer> show = answersTo({{&source, call, "tvshow"}}, end);
  return show.empty() ? "" : imdbOf(show[0].elements);
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

bool search(const Call& call, Document& document, const Sources& sources, const char* root,
            const char* entry) {
  std::vector<Question> questions;
  for (const Source& source : sources.list) {
    questions.push_back({&source, arguments, root});
  }
  const std::vector<Answer> answers = answersTo(std::move(questions), sources.end);
  if (answers.empty()) {
    throw std::runtime_error("no add-on has an answer");
  }
  const int most = std::clamp(call.count, 1, kMostResults);
  write(mergeLists(answers, entry, static_cast<std::size_t>(most)), document);
  return true;
}

/// Asks the source that the id names, and the others by an identifier that all know: at once if the
/// id is one, else once the first source has told it.
bool describe(const Call& call, Document& document, const Sources& sources, const char* root) {
  const std::size_t colon = call.id.find(':');
  const std::string own = colon == std::string::npos ? call.id : call.id.substr(colon + 1);
  const std::string name = colon == std::string::npos ? "" : call.id.substr(0, colon);
  const auto isNamed = [&](const Source& source) { return source.name == name; };
  const auto named = std::find_if(sources.list.begin(), sources.list.end(), isNamed);
  std::string imdb = imdbOf(own);
  if (named == sources.list.end() && (imdb.empty() || (!name.empty() && name != "imdb"))) {
    return false;
  }
  std::vector<Answer> answers;
  const auto askOthers = [&](std::vector<Question> questions) {
    for (const Source& source : sources.list) {
      if (!imdb.empty() && !isNamed(source)) {
        questions.push_back({&source, withId("imdb:" + imdb), root});
      }
    }
    for (Answer& answer : answersTo(std::move(questions), sources.end)) {
      answers.push_back(std::move(answer));
    }
  };
  std::vector<Question> first;
  if (named != sources.list.end()) {
    first.push_back({&*named, withId(own), root});
  }
  askOthers(std::move(first));
  if (imdb.empty() && !answers.empty()) {
    imdb = call.hasEpisode ? imdbOfShow(*named, own, sources.end) : imdbOf(answers[0].elements);
    askOthers({});
  }
  write(mergeDetails(answers), document);
  return !answers.empty();
}

bool searchMovie(const Call& call, Document& document) {
  return search(call, document, Sources("Movie", kUsualMovies), "movielist", "movie");
}

bool describeMovie(const Call& call, Document& document) {
  return describe(call, document, Sources("Movie", kUsualMovies), "movie");
}

bool searchShow(const Call& call, Document& document) {
  return search(call, document, Sources("TV", kUsualShows), "tvshowlist", "tvshow");
}

bool describeShow(const Call& call, Document& document) {
  return describe(call, document, Sources("TV", kUsualShows),
                  call.hasEpisode ? "tvepisode" : "tvshow");
}

bool searchAlbums(const Call& call, Document& document) {
  return search(call, document, Sources("Music", kUsualMusic), "albumlist", "album");
}

bool searchPictures(const Call& call, Document& document) {
  return search(call, document, Sources("Music", kUsualMusic), "artistthumbnail", "url");
}

/// Each of its add-ons can be tested by itself.
std::string test() {
  std::set<std::string> programs;
  for (const auto& [type, usual] : {std::pair("Movie", kUsualMovies), std::pair("TV", kUsualShows),
                                    std::pair("Music", kUsualMusic)}) {
    unsetenv(kInside);
    for (const Source& source : Sources(type, usual).list) {
      if (access(source.program.c_str(), X_OK) != 0) {
        throw std::runtime_error(std::string("[chain] ") + type + ": " + source.program +
                                 " cannot be started");
      }
      programs.insert(source.name);
    }
  }
  std::string text = "asks";
  for (const std::string& name : programs) {
    text += ' ' + name;
  }
  return text;
}

}  // namespace
}  // namespace quilp::chain

int main(int argc, char** argv) {
  using namespace quilp::chain;
  for (int i = 1; i < argc; i += i == 1 ? 1 : 2) {
    if (i == 1) {
      arguments.emplace_back(argv[i]);
    } else if (std::strcmp(argv[i], "-o") != 0 && i + 1 < argc) {
      arguments.insert(arguments.end(), {argv[i], argv[i + 1]});
    }
  }
  return quilp::kit::serve("chain", argc, argv,
                           {{"searchmovie", "movielist", searchMovie},
                            {"getmovieinfobyid", "movie", describeMovie},
                            {"searchtvshow", "tvshowlist", searchShow},
                            {"gettvshowinfo", quilp::kit::showRoot(argc, argv), describeShow},
                            {"searchAlbum", "albumlist", searchAlbums},
                            {"getAlbumByArtist", "albumlist", searchAlbums},
                            {"getArtistThumbnail", "artistthumbnail", searchPictures}},
                           test);
}
