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

Command& addSearch(Command& explain, const char* name, const char* what, const char* operand,
                   Explanation (*search)()) {
  Command& command = explain.add(name, "Explain a search for " + std::string(what));
  command.operands.push_back({operand, "What to look for", toText(text)});
  addCount(command, count);
  addFormat(command, format, {Format::kTable, Format::kJson});
  command.run = [search] {
    const Explanation explanation = search();
    if (!print(explanation, format)) {
      throw std::system_error(errno, std::generic_category(), "cannot write");
    }
    return explanation.searchStatus;
  };
  return command;
}

}  // namespace

void addExplainCommands(Command& program) {
  Command& explain = program.add("explain", "Search, and tell how and why");
  addSearch(explain, "movie", "movies", "KEYWORD", [] { return explainMovies(text, count); });
  Command& tv = addSearch(explain, "tv", "TV shows", "KEYWORD",
                          [] { return explainShows(text, count, language); });
  addLanguage(tv, language);
  Command& music = addSearch(explain, "music", "albums", "ALBUM",
                             [] { return explainAlbums(text, artist, count); });
  music.options.push_back({0, "artist", "NAME", "Only albums of this artist", toText(artist)});
}

}  // namespace quilp
