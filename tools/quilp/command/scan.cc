#include "scan/scan.h"

#include <algorithm>
#include <string>
#include <vector>

#include "command/commands.h"
#include "command/judging.h"
#include "command/options.h"
#include "output/exit_status.h"
#include "scan/changes.h"

namespace quilp {
namespace {

constexpr int kMostJobs = 64;

/// "nfo", "artwork", or both with a comma.
void takeWrite(const std::string& words, DressRequest& request) {
  for (std::size_t start = 0; start <= words.size();) {
    const std::size_t end = std::min(words.find(',', start), words.size());
    const std::string word = words.substr(start, end - start);
    if (word != "nfo" && word != "artwork") {
      throw WrongUsage(noSuch("thing to write", word, {"nfo", "artwork"}));
    }
    (word == "nfo" ? request.nfo : request.artwork) = true;
    start = end + 1;
  }
}

}  // namespace

void addScanCommand(Command& program) {
  static ScanRequest request;
  static List paths;
  Command& command =
      program.add("scan", "Find out what the media files of folders are, and print a row for each");
  paths.addTo(command, "PATH", "Folders, with those below them, and files");
  addJudging(command, request);
  command.options.push_back({'j', "", "N",
                             "How many add-ons may run at a time (default: one for each processor, "
                             "at most 4); pages are never fetched at the same time",
                             toNumber("-j", request.jobs, 1, kMostJobs)});
  command.options.push_back({0, "resume", "FILE",
                             "Keep what was found in this file, and leave out what it already has",
                             toText(request.memory)});
  command.options.push_back(
      {0, "report", "FILE",
       "Write a page for a browser: a wall of posters, and why each match is sure",
       toText(request.report)});
  command.options.push_back({0, "write", "nfo,artwork",
                             "Write NFO files and pictures beside the files of sure matches",
                             [](const std::string& words) { takeWrite(words, request.dress); }});
  command.options.push_back({0, "rename", "PATTERN",
                             "Rename the files of sure matches, such as \"{title} ({year})\"",
                             toText(request.dress.pattern)});
  command.options.push_back({0, "replace", "", "Let --write replace files that are there",
                             [](const std::string&) { request.replace = true; }});
  command.options.push_back({0, "dry-run", "", "Only tell what would be written and renamed",
                             [](const std::string&) { request.dryRun = true; }});
  command.options.push_back(
      {0, "journal", "FILE", "List all changes in this file, for --undo", toText(request.journal)});
  static std::string journalToUndo;
  command.options.push_back(
      {0, "undo", "JOURNAL", "Take back all changes of a scan", toText(journalToUndo)});
  addFormat(command, request.format, {Format::kTable, Format::kJson, Format::kCsv, Format::kHtml});
  command.run = [] {
    if (!journalToUndo.empty()) {
      return undo(journalToUndo) == 0 ? 0 : kNothingFound;
    }
    const auto keepIn = [](std::vector<std::string>& words) {
      return [&words](const std::string& word) { words.push_back(word); };
    };
    if (request.format == Format::kHtml && !request.report.empty()) {
      throw WrongUsage("--report and --format html are the same page; leave one out", "quilp scan");
    }
    paths.forEach(keepIn(request.paths), keepIn(request.listed));
    return scan(request);
  };
}

}  // namespace quilp
