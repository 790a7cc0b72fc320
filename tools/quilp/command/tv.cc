#include <string>

#include "command/commands.h"
#include "command/options.h"
#include "libquilp.h"
#include "output/exit_status.h"
#include "output/result.h"

namespace quilp {
namespace {

std::string id;
std::string language;
Format format;

void addLanguage(CLI::App* command) {
  command->add_option("-l", language,
                      "Language for an add-on (default: the one configured for it)");
}

void addShowId(CLI::App* command) {
  command
      ->add_option("ID", id,
                   "Identifier of the show: as a search gave it; for an add-on, five characters in "
                   "front of its own")
      ->required();
}

const char* languageOrNull() { return language.empty() ? nullptr : language.c_str(); }

}  // namespace

void addTVCommands(CLI::App& app, int& status) {
  CLI::App* tv = app.add_subcommand("tv", "TV shows and episodes")->require_subcommand(1);

  static std::string keyword;
  static int count = kDefaultCount;
  CLI::App* search = tv->add_subcommand("search", "Search TV shows by keyword or release name");
  search->add_option("KEYWORD", keyword, "What to look for")->required();
  addCount(search, count);
  addLanguage(search);
  addFormat(search, format);
  search->callback([&status] {
    status = printDocument(
        [] { return velPrintSearchTVShows(keyword.c_str(), count, languageOrNull()); }, format);
  });

  CLI::App* show = tv->add_subcommand("show", "Show the details of one TV show");
  addShowId(show);
  addLanguage(show);
  addFormat(show, format);
  show->callback([&status] {
    status = printDocument([] { return velPrintTVShowByID(id.c_str(), languageOrNull()); }, format);
  });

  static int season = 0;
  static int number = 0;
  CLI::App* episode = tv->add_subcommand("episode", "Show the details of one episode");
  addShowId(episode);
  addNumber(episode, "SEASON", season, "Number of the season")->required();
  addNumber(episode, "EPISODE", number, "Number of the episode in its season")->required();
  addLanguage(episode);
  addFormat(episode, format);
  episode->callback([&status] {
    const int result = printDocument(
        [] { return velPrintTVEpisode(id.c_str(), season, number, languageOrNull()); }, format);
    status = result < 0 ? kNothingFound : result;
  });
}

}  // namespace quilp
