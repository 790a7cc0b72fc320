#include "explain/explain.h"

#include <cerrno>
#include <string>
#include <system_error>

#include "command/commands.h"
#include "command/judging.h"
#include "command/options.h"
#include "command/time_limit.h"
#include "lookup/requests.h"
#include "output/exit_status.h"
#include "output/message.h"
#include "platform/why_nothing.h"
#include "scan/decision.h"
#include "scan/source.h"

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

int explainFile(const ScanRequest& request, const std::string& file) {
  const Decision decision = decide(request, file);
  if (decision.interrupted) {
    return kInterrupted;
  }
  if (!print(decision, format)) {
    throw std::system_error(errno, std::generic_category(), "cannot write");
  }
  if (!decision.row.unknown()) {
    return 0;
  }
  tell(whyNothing(decision.whyNothing, requestOf(decision.item.kind).media));
  return kNothingFound;
}

void addFile(Command& explain) {
  static ScanRequest request;
  static std::string file;
  explain.operands.push_back(
      {"FILE", "What a scan decides about this file, and why", toText(file)});
  addJudging(explain, request);
  addFormat(explain, format, {Format::kTable, Format::kJson});
  explain.run = [] { return explainFile(request, file); };
}

}  // namespace

void addExplainCommands(Command& program) {
  Command& explain =
      program.add("explain", "Make a search, or a scan's decision, and tell how and why");
  addFile(explain);
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
