#include "command/judging.h"

#include "command/options.h"
#include "command/time_limit.h"

namespace quilp {
namespace {

constexpr int kMostCandidates = 100;
constexpr int kMostSure = 100;

}  // namespace

void addJudging(Command& command, ScanRequest& request) {
  command.options.push_back(
      choice("type", request.kind, "What the files are (default: what their names tell)",
             Choices<std::optional<MediaKind>>{{"movie", MediaKind::kMovie},
                                               {"tv", MediaKind::kEpisode},
                                               {"karaoke", MediaKind::kSong},
                                               {"KTV", MediaKind::kSong},
                                               {"album", MediaKind::kAlbum}}));
  command.options.push_back({0, "sure", "N", "The least confidence of a match (default: 80)",
                             toNumber("--sure", request.sure, 0, kMostSure)});
  command.options.push_back({0, "overrides", "FILE",
                             "Lines PATTERN = IDENTIFIER, which count more than any search",
                             toText(request.overrides)});
  command.options.push_back({'n', "", "N", "Results of a search to choose from (default: 10)",
                             toNumber("-n", request.candidates, 1, kMostCandidates)});
  command.options.push_back({0, "timeout", "SECONDS",
                             "End a lookup after this time (default: no limit)",
                             toNumber("--timeout", request.timeout, 1, kMostSeconds)});
}

}  // namespace quilp
