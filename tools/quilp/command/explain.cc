#include "explain/explain.h"

#include <cerrno>
#include <string>
#include <system_error>

#include "command/commands.h"
#include "command/options.h"
#include "command/time_limit.h"
#include "lookup/requests.h"

namespace quilp {
namespace {

using libquilp::Values;

std::string text;
std::string artist;
std::string language;
int count = kDefaultCount;
Format format;

Command& addSearch(Command& explain, const char* name, const char* what, const char* operand,
                   const libquilp::Request& request, Values (*values)()) {
  Command& command = explain.add(name, "Explain a search for " + std::string(what));
  command.operands.push_back({operand, "What to look for", toText(text)});
  addCount(command, count);
  addFormat(command, format, {Format::kTable, Format::kJson});
  addTimeout(command);
  command.run = [&request, values] {
    Explanation explanation = quilp::explain(request, values(), beginLookup());
    endLookup(explanation.answer);
    if (!print(explanation, format)) {
      throw std::system_error(errno, std::generic_category(), "cannot write");
    }
    return statusAfterLookup(explanation.exitStatus);
  };
  return command;
}

}  // namespace

void addExplainCommands(Command& program) {
  Command& explain = program.add("explain", "Search, and tell how and why");
  addSearch(explain, "movie", "movies", "KEYWORD", libquilp::kMovieSearch,
            [] { return Values::search(text.c_str(), count); });
  Command& tv = addSearch(explain, "tv", "TV shows", "KEYWORD", libquilp::kShowSearch, [] {
    return Values::search(text.c_str(), count, language.empty() ? nullptr : language.c_str());
  });
  addLanguage(tv, language);
  Command& music = addSearch(explain, "music", "albums", "ALBUM", libquilp::kAlbumSearch,
                             [] { return Values::ofAlbum(text.c_str(), artist.c_str(), count); });
  music.options.push_back({0, "artist", "NAME", "Only albums of this artist", toText(artist)});
}

}  // namespace quilp
