#include "check/check.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <system_error>

#include "check/interview.h"
#include "lookup/requests.h"

namespace quilp {
namespace {

using libquilp::Values;

constexpr int kCount = 10;

/// A value that was given, or else a guess.
std::string orElse(const std::string& given, const std::string& guess) {
  return given.empty() ? guess : given;
}

int orOne(const std::string& given) { return given.empty() ? 1 : std::stoi(given); }

/// Puts the questions of one kind of media.
class Asker {
 public:
  Asker(Interview& interview, const Wishes& wishes) : interview_(interview), wishes_(wishes) {}

  void askMovies() {
    const std::string id =
        askForId({"search", libquilp::kMovieSearch, searchArguments(libquilp::kMovieSearch),
                  "--keyword", wishes_.keyword.empty()});
    askAbout(id, {"details", libquilp::kMovieDetails,
                  arguments(libquilp::kMovieDetails, Values::title(prefixed(id).c_str())),
                  "--keyword", false, id});
  }

  void askTV() {
    const std::string id =
        askForId({"search", libquilp::kShowSearch, searchArguments(libquilp::kShowSearch),
                  "--keyword", wishes_.keyword.empty()});
    const std::string whole = prefixed(id);
    askAbout(id, {"show", libquilp::kShowDetails,
                  arguments(libquilp::kShowDetails, Values::title(whole.c_str(), language())),
                  "--keyword", false, id});
    const Values part =
        Values::ofEpisode(whole.c_str(), orOne(wishes_.season), orOne(wishes_.episode), language());
    askAbout(id, {"episode", libquilp::kEpisodeDetails, arguments(libquilp::kEpisodeDetails, part),
                  "--keyword, --season and --episode",
                  wishes_.season.empty() && wishes_.episode.empty()});
  }

  void askMusic() {
    const std::string album = orElse(wishes_.album, "the");
    const Values search = Values::ofAlbum(album.c_str(), wishes_.artist.c_str(), kCount);
    const auto albums =
        interview_.ask({"search", libquilp::kAlbumSearch, arguments(libquilp::kAlbumSearch, search),
                        "--album", wishes_.album.empty()});
    const std::string artist = orElse(wishes_.artist, albums ? albums->first("artist") : "");
    const Values byArtist = Values::ofArtist(artist.c_str(), kCount);
    askAbout(artist, {"albums", libquilp::kArtistAlbums,
                      arguments(libquilp::kArtistAlbums, byArtist), "--artist"});
    askAbout(artist,
             {"art", libquilp::kArtistPictures, arguments(libquilp::kArtistPictures, byArtist),
              "--artist", wishes_.artist.empty()});
  }

  void askKaraoke() {
    const std::string file = orElse(wishes_.file, "/songs/Anna Lane[F]_Harbour Lights[E][L].mkv");
    interview_.ask({"song", libquilp::kSong, arguments(libquilp::kSong, Values::song(file.c_str())),
                    "--file", wishes_.file.empty()});
  }

 private:
  /// As the library's callers have it; the library drops the characters before it.
  static std::string prefixed(const std::string& id) { return "quilp" + id; }

  const char* language() const {
    return wishes_.language.empty() ? nullptr : wishes_.language.c_str();
  }

  std::vector<std::string> arguments(const libquilp::Request& request, const Values& values) const {
    return argumentsOf(request, values, {{}, wishes_.program});
  }

  std::vector<std::string> searchArguments(const libquilp::Request& request) const {
    const std::string keyword = orElse(wishes_.keyword, "the");
    return arguments(request, Values::search(keyword.c_str(), kCount, language()));
  }

  std::string askForId(const Question& search) {
    const auto found = interview_.ask(search);
    return found ? found->first("id") : "";
  }

  /// Asks when what to ask for is known: the search before was to tell it.
  void askAbout(const std::string& known, const Question& question) {
    if (known.empty()) {
      interview_.leaveOut(question, "the search told nothing to ask for: see " + question.hint);
    } else {
      interview_.ask(question);
    }
  }

  Interview& interview_;
  const Wishes& wishes_;
};

const std::map<std::string, void (Asker::*)()>& askByType() {
  static const std::map<std::string, void (Asker::*)()> ask = {{"KTV", &Asker::askKaraoke},
                                                               {"Movie", &Asker::askMovies},
                                                               {"Music", &Asker::askMusic},
                                                               {"TV", &Asker::askTV}};
  return ask;
}

/// A path works from any folder, as the registry's must; a bare name is searched along PATH.
std::string absolute(const std::string& program) {
  return program.find('/') == std::string::npos ? program
                                                : std::filesystem::absolute(program).string();
}

}  // namespace

bool check(Wishes wishes) {
  wishes.program = absolute(wishes.program);
  Report report;
  try {
    Runner runner(wishes.program,
                  std::chrono::milliseconds(static_cast<long>(wishes.timeout * 1000)));
    Interview interview(runner, report);
    if (interview.greet()) {
      Asker asker(interview, wishes);
      (asker.*askByType().at(wishes.type))();
    }
  } catch (const Interrupted& interrupted) {
    std::signal(interrupted.signal, SIG_DFL);
    std::raise(interrupted.signal);
  }
  const bool printed = wishes.json ? report.printAsJson(wishes.program, wishes.type)
                                   : report.printText(wishes.program, wishes.type);
  return printed && report.good();
}

}  // namespace quilp
