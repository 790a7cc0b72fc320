#include "check/check.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <system_error>

#include "check/interview.h"
#include "libquilp.h"

namespace quilp {
namespace {

const std::string kCount = "10";

/// A value that was given, or else a guess.
std::string orElse(const std::string& given, const std::string& guess) {
  return given.empty() ? guess : given;
}

/// Asks when what to ask for is known: the search before was to tell it.
void askAbout(const std::string& known, Interview& interview, const Question& question) {
  if (known.empty()) {
    interview.leaveOut(question, "the search told nothing to ask for: see " + question.hint);
  } else {
    interview.ask(question);
  }
}

std::string firstValue(const std::optional<Document>& document, const char* element) {
  return document ? document->first(element) : "";
}

void askMovies(Interview& interview, const Wishes& wishes) {
  const std::string keyword = ProcessKeyword(orElse(wishes.keyword, "the").c_str(), 0);
  Question search = {
      "search", {"searchmovie", "-t", keyword, "-n", kCount}, movieList(), "--keyword"};
  search.keyword = true;
  search.guessed = wishes.keyword.empty();
  const std::string id = firstValue(interview.ask(search), "id");
  Question details = {"details", {"getmovieinfobyid", "-i", id}, movie(), "--keyword"};
  details.id = id;
  askAbout(id, interview, details);
}

void askTV(Interview& interview, const Wishes& wishes) {
  const std::string keyword = ProcessKeyword(orElse(wishes.keyword, "the").c_str(), 0);
  const char* configured = nullptr;
  std::string program = wishes.program;
  getDefaultLang(&configured, program.data());
  const std::string language = orElse(wishes.language, configured);
  Question search = {"search",
                     {"searchtvshow", "-t", keyword, "-n", kCount, "-l", language},
                     showList(),
                     "--keyword"};
  search.keyword = true;
  search.guessed = wishes.keyword.empty();
  const std::string id = firstValue(interview.ask(search), "id");
  Question details = {"show", {"gettvshowinfo", "-i", id, "-l", language}, show(), "--keyword"};
  details.id = id;
  askAbout(id, interview, details);
  Question part = {"episode",
                   {"gettvshowinfo", "-i", id, "-s", orElse(wishes.season, "1"), "-e",
                    orElse(wishes.episode, "1"), "-l", language},
                   episode(),
                   "--keyword, --season and --episode"};
  part.guessed = wishes.season.empty() && wishes.episode.empty();
  askAbout(id, interview, part);
}

void askMusic(Interview& interview, const Wishes& wishes) {
  const std::string album = orElse(wishes.album, "the");
  Question search = {"search",
                     {"searchAlbum", "-b", album, "-a", wishes.artist, "-n", kCount},
                     albumList(),
                     "--album"};
  search.guessed = wishes.album.empty();
  const std::optional<Document> albums = interview.ask(search);
  const std::string artist = orElse(wishes.artist, firstValue(albums, "artist"));
  askAbout(
      artist, interview,
      {"albums", {"getAlbumByArtist", "-a", artist, "-n", kCount}, artistAlbumList(), "--artist"});
  Question pictures = {
      "art", {"getArtistThumbnail", "-a", artist, "-n", kCount}, artwork(), "--artist"};
  pictures.guessed = wishes.artist.empty();
  askAbout(artist, interview, pictures);
}

void askKaraoke(Interview& interview, const Wishes& wishes) {
  const std::string file = orElse(wishes.file, "/songs/Anna Lane[F]_Harbour Lights[E][L].mkv");
  Question question = {"song", {"getKTVInfo", "-f", file}, song(), "--file"};
  question.guessed = wishes.file.empty();
  interview.ask(question);
}

using Ask = void (*)(Interview&, const Wishes&);

const std::map<std::string, Ask>& askByType() {
  static const std::map<std::string, Ask> ask = {
      {"KTV", askKaraoke}, {"Movie", askMovies}, {"Music", askMusic}, {"TV", askTV}};
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
      askByType().at(wishes.type)(interview, wishes);
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
