#include <cerrno>
#include <string>
#include <system_error>

#include "command/commands.h"
#include "command/options.h"
#include "explain/search.h"

namespace quilp {
namespace {

std::string text;
std::string artist;
std::string language;
int count = kDefaultCount;
Format format;

CLI::App* addSearch(CLI::App* explain, int& status, const char* name, const char* what,
                    Explanation (*search)()) {
  CLI::App* command = explain->add_subcommand(name, "Explain a search for " + std::string(what));
  addCount(command, count);
  addFormat(command, format, {Format::kTable, Format::kJson});
  command->callback([&status, search] {
    const Explanation explanation = search();
    if (!print(explanation, format)) {
      throw std::system_error(errno, std::generic_category(), "cannot write");
    }
    status = explanation.searchStatus;
  });
  return command;
}

}  // namespace

void addExplainCommands(CLI::App& app, int& status) {
  CLI::App* explain =
      app.add_subcommand("explain", "Search, and tell how and why")->require_subcommand(1);
  addSearch(explain, status, "movie", "movies", [] { return explainMovies(text, count); })
      ->add_option("KEYWORD", text, "What to look for")
      ->required();
  CLI::App* tv = addSearch(explain, status, "tv", "TV shows",
                           [] { return explainShows(text, count, language); });
  tv->add_option("KEYWORD", text, "What to look for")->required();
  tv->add_option("-l", language, "Language for an add-on (default: the one configured for it)");
  CLI::App* music = addSearch(explain, status, "music", "albums",
                              [] { return explainAlbums(text, artist, count); });
  music->add_option("ALBUM", text, "Title of the album")->required();
  music->add_option("--artist", artist, "Only albums of this artist");
}

}  // namespace quilp
