#include "scan/scan.h"

#include <string>

#include "command/commands.h"
#include "command/options.h"
#include "platform/platform_check.h"

namespace quilp {
namespace {

constexpr int kMostJobs = 64;

std::string nameOf(MediaType type) {
  return type == MediaType::kMovie ? "movie" : type == MediaType::kTV ? "tv" : "karaoke";
}

}  // namespace

void addScanCommand(CLI::App& app, int& status) {
  static ScanRequest request;
  static std::string type;
  CLI::App* command = app.add_subcommand(
      "scan", "Look up every media file of a folder by its name, and print a row for each");
  command->add_option("DIR", request.folder, "The folder; those below it belong to it")->required();
  addChoice<MediaType>(
      command, "--type", request.type, "What the files are",
      {{"movie", MediaType::kMovie}, {"tv", MediaType::kTV}, {"karaoke", MediaType::kKaraoke}});
  addFormat(command, request.format, {Format::kTable, Format::kJson, Format::kCsv});
  addNumber(command, "-n", request.candidates,
            "Results of a search that are looked at for the year in a file's name")
      ->capture_default_str()
      ->check(CLI::Range(1, 100));
  addNumber(command, "-j", request.jobs,
            "How many add-ons may run at a time; pages are never fetched at the same time")
      ->capture_default_str()
      ->check(CLI::Range(1, kMostJobs));
  command
      ->add_option("--resume", request.journal,
                   "Keep what was found in this file, and leave out what it already has")
      ->type_name("FILE");
  command->callback([&status] {
    const ScanOutcome outcome = scan(request);
    status = outcome.status;
    if (status == 0 && outcome.foundNothing) {  // for another status, it is told anyway
      reportPlatform(nameOf(request.type));
    }
  });
}

}  // namespace quilp
