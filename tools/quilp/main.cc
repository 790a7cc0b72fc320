#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "command/commands.h"
#include "output/exit_status.h"
#include "output/utf8.h"
#include "platform/platform_check.h"

namespace {

/// The arguments as the parser takes them, last one first. It would take "[a,b]" for a list and
/// "++" for the end of a command: a zero byte behind them, where c_str() ends, keeps them what they
/// are.
std::vector<std::string> argumentsOf(int argc, char** argv) {
  std::vector<std::string> arguments;
  for (int i = argc; --i > 0;) {
    std::string argument = argv[i];
    const bool list = !argument.empty() && argument.front() == '[' && argument.back() == ']';
    if (list || argument == "++") {
      argument += '\0';
    }
    arguments.push_back(argument);
  }
  return arguments;
}

/// In place of a closed standard descriptor, the next file that is opened would get what is meant
/// for a person. To this one, writing fails as it should.
void fillStandardDescriptors() {
  int file = 0;
  while ((file = open("/dev/null", O_RDONLY)) >= 0 && file <= STDERR_FILENO) {
  }
  close(file);
}

/// The parser repeats arguments as they are, and they may be names of foreign files.
int tell(const CLI::App& app, const CLI::ParseError& error) {
  std::stringstream messages;
  const bool helped = app.exit(error, std::cout, messages) == 0;
  for (std::string line; std::getline(messages, line);) {
    std::cerr << quilp::lineText(line) << '\n';
  }
  if (!helped) {
    return quilp::kWrongUsage;
  }
  return std::cout.flush() ? 0 : quilp::kNothingFound;
}

/// What was looked up: the command, what an explanation is of, or what a scan looks for.
std::string lookupOf(const CLI::App& app) {
  const CLI::App* command = app.get_subcommands().front();
  if (command->get_name() == "scan") {
    const CLI::Option* type = command->get_option("--type");
    return type->count() > 0 ? type->results().front() : "movie";
  }
  const bool isExplained = command->get_name() == "explain";
  return (isExplained ? command->get_subcommands().front() : command)->get_name();
}

int run(int argc, char** argv) {
  CLI::App app("Look up descriptive metadata for media files", "quilp");
  app.set_version_flag("--version", std::string("quilp ") + QUILP_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Exit status: 0 for a result, 1 for nothing found, 2 for wrong usage, otherwise that of the\n"
      "add-on or the client that failed (music, karaoke: 1; scan: 101 and more). See quilp(1).");
  int status = 0;
  quilp::addMovieCommands(app, status);
  quilp::addTVCommands(app, status);
  quilp::addKaraokeCommand(app, status);
  quilp::addMusicCommands(app, status);
  quilp::addKeywordCommand(app, status);
  quilp::addScanCommand(app, status);
  quilp::addExplainCommands(app, status);
  quilp::addAddonCommands(app, status);
  try {
    app.parse(argumentsOf(argc, argv));
  } catch (const CLI::ParseError& error) {
    return tell(app, error);
  }
  if (status != 0) {
    quilp::reportPlatform(lookupOf(app));
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  fillStandardDescriptors();
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quilp: %s\n", quilp::lineText(error.what()).c_str());
    return quilp::kNothingFound;
  }
}
