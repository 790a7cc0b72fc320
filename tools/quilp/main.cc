#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <string>

#include "command/commands.h"
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

Command makeProgram() {
  Command program = {"quilp", "Look up descriptive metadata for media files"};
  program.options = {{'h', "help", "", "Print this help, also after a command"},
                     {'V', "version", "", "Print the version"}};
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
  addCatalogueCommands(program);
  addAddonCommands(program);
  return program;
}

int run(int argc, char** argv) {
  const Command program = makeProgram();
  if (argc > 2 && std::string(argv[1]) == "--complete") {
    return printCompletions(program, {argv + 2, argv + argc}) ? 0 : kNothingFound;
  }
  try {
    return parse(program, argc, argv)();
  } catch (const WrongUsage& error) {
    complain(error.command(), error.what());
    const std::string words = error.command().substr(program.name.size());
    std::fprintf(stderr, "See \"quilp help%s\".\n", words.c_str());
    return kWrongUsage;
  }
}

}  // namespace
}  // namespace quilp

int main(int argc, char** argv) {
  quilp::fillStandardDescriptors();
  quilp::silenceIniParser();
  try {
    return quilp::run(argc, argv);
  } catch (const std::exception& error) {
    quilp::complain("quilp", error.what());
    return quilp::kNothingFound;
  }
}
