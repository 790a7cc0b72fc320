#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "command/commands.h"
#include "command/record.h"
#include "output/exit_status.h"
#include "output/utf8.h"
#include "platform/registry_view.h"
#include "usage/completion.h"
#include "usage/parse.h"

namespace quilp {
namespace {

/// Opens a file in place of each closed standard descriptor. Otherwise the next file that the
/// program opens would receive its output. Writing to this one fails, as it should.
void fillStandardDescriptors() {
  int file = 0;
  while ((file = open("/dev/null", O_RDONLY)) >= 0 && file <= STDERR_FILENO) {
  }
  close(file);
}

void complain(const std::string& command, const std::string& text) {
  std::fprintf(stderr, "%s: %s\n", command.c_str(), lineText(text).c_str());
}

int run(const std::vector<std::string>& words);

Command makeProgram() {
  Command program = {"quilp", "Look up descriptive metadata for media files"};
  program.options = {{'h', "help", "", "Print this help, also after a command"},
                     {'V', "version", "", "Print the version"}};
  addRecordOptions(program);
  program.footer =
      "Exit status: 0 for a result, 1 for nothing found, 2 for wrong usage, otherwise that of the\n"
      "add-on or of curl that failed (music, karaoke: 1; scan: 101 and more). See quilp(1).\n";
  addMovieCommands(program);
  addTVCommands(program);
  addKaraokeCommand(program);
  addMusicCommands(program);
  addKeywordCommand(program);
  addNameCommand(program);
  addScanCommand(program);
  addExplainCommands(program);
  addDriftCommand(program, &run);
  addCatalogueCommands(program);
  addAddonCommands(program);
  addDoctorCommand(program);
  return program;
}

int run(const std::vector<std::string>& words) {
  const Command program = makeProgram();
  if (words.size() > 1 && words.front() == "--complete") {
    return printCompletions(program, {words.begin() + 1, words.end()}) ? 0 : kNothingFound;
  }
  try {
    return isRecordedRun(words) ? runRecorded(words, &run) : parse(program, words)();
  } catch (const WrongUsage& error) {
    complain(error.command(), error.what());
    const std::string command = error.command().substr(program.name.size());
    std::fprintf(stderr, "See \"quilp help%s\".\n", command.c_str());
    return kWrongUsage;
  }
}

}  // namespace
}  // namespace quilp

int main(int argc, char** argv) {
  quilp::fillStandardDescriptors();
  quilp::silenceIniParser();
  try {
    return quilp::run({argv + std::min(argc, 1), argv + argc});
  } catch (const std::exception& error) {
    quilp::complain("quilp", error.what());
    return quilp::kNothingFound;
  }
}
