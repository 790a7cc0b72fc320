#include "scan/scan.h"

#include <string>

#include "command/commands.h"
#include "command/options.h"

namespace quilp {
namespace {

constexpr int kMostCandidates = 100;
constexpr int kMostJobs = 64;

}  // namespace

void addScanCommand(Command& program) {
  static ScanRequest request;
  static List paths;
  Command& command = program.add(
      "scan", "Look up every media file of a folder by its name, and print a row for each");
  paths.addTo(command, "PATH", "Folders, with those below them, and files");
  command.options.push_back(choice<MediaType>("type", request.type,
                                              "What the files are (default: movie)",
                                              {{"movie", MediaType::kMovie},
                                               {"tv", MediaType::kTV},
                                               {"karaoke", MediaType::kKaraoke},
                                               {"KTV", MediaType::kKaraoke}}));
  command.options.push_back({'n', "", "N",
                             "Results of a search that are looked at for the year in a file's name "
                             "(default: 3)",
                             toNumber("-n", request.candidates, 1, kMostCandidates)});
  command.options.push_back(
      {'j', "", "N",
       "How many add-ons may run at a time (default: 1); pages are never fetched at "
       "the same time",
       toNumber("-j", request.jobs, 1, kMostJobs)});
  command.options.push_back({0, "resume", "FILE",
                             "Keep what was found in this file, and leave out what it already has",
                             toText(request.journal)});
  addFormat(command, request.format, {Format::kTable, Format::kJson, Format::kCsv});
  command.run = [] {
    request.paths = paths.words();
    return scan(request);
  };
}

}  // namespace quilp
