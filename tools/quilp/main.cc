#include <cstdio>
#include <exception>

#include "commands.h"

namespace {

int run(int argc, char** argv) {
  CLI::App app("Look up descriptive metadata for media files", "quilp");
  app.set_version_flag("--version", std::string("quilp ") + QUILP_VERSION);
  app.require_subcommand(1);
  app.footer(
      "Results are XML documents on standard output. Exit status: 0 for a document, 1 for nothing\n"
      "found, the status of the add-on, or of the client, that failed, 2 for wrong usage.");
  int status = 0;
  quilp::addMovieCommands(app, status);
  quilp::addTVCommands(app, status);
  quilp::addKeywordCommand(app, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : quilp::kWrongUsage;
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quilp: %s\n", error.what());
    return quilp::kNothingFound;
  }
}
