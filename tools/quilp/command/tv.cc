#include <climits>
#include <string>

#include "command/commands.h"
#include "command/identifier.h"
#include "command/options.h"
#include "command/print_answer.h"
#include "command/time_limit.h"
#include "lookup/requests.h"

namespace quilp {
namespace {

using libquilp::Values;

Identifier identifier;
std::string language;
Format format;

const char* languageOrNull() { return language.empty() ? nullptr : language.c_str(); }

void addSearch(Command& tv) {
  static std::string keyword;
  static int count = kDefaultCount;
  Command& search = tv.add("search", "Search TV shows by keyword or release name");
  search.operands.push_back({"KEYWORD", "What to look for", toText(keyword)});
  addCount(search, count);
  addLanguage(search, language);
  addFormat(search, format);
  addTimeout(search);
  search.run = [] {
    return printAnswer(libquilp::kShowSearch,
                       Values::search(keyword.c_str(), count, languageOrNull()), format);
  };
}

void addShow(Command& tv) {
  Command& show = tv.add("show", "Show the details of one TV show");
  identifier.addTo(show, "Identifier of the show");
  addLanguage(show, language);
  addFormat(show, format);
  addTimeout(show);
  show.run = [] {
    const std::string id = identifier.forRequest(libquilp::kShowDetails);
    return printAnswer(libquilp::kShowDetails, Values::title(id.c_str(), languageOrNull()), format);
  };
}

void addEpisode(Command& tv) {
  static int season = 0;
  static int number = 0;
  Command& episode = tv.add("episode", "Show the details of one episode");
  identifier.addTo(episode, "Identifier of the show");
  episode.operands.push_back(
      {"SEASON", "Number of the season", toNumber("SEASON", season, INT_MIN, INT_MAX)});
  episode.operands.push_back({"EPISODE", "Number of the episode in its season",
                              toNumber("EPISODE", number, INT_MIN, INT_MAX)});
  addLanguage(episode, language);
  addFormat(episode, format);
  addTimeout(episode);
  episode.run = [] {
    const std::string id = identifier.forRequest(libquilp::kEpisodeDetails);
    return printAnswer(libquilp::kEpisodeDetails,
                       Values::ofEpisode(id.c_str(), season, number, languageOrNull()), format);
  };
}

}  // namespace

void addTVCommands(Command& program) {
  Command& tv = program.add("tv", "TV shows and episodes");
  addSearch(tv);
  addShow(tv);
  addEpisode(tv);
}

}  // namespace quilp
