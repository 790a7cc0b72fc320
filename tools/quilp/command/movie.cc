#include <string>

#include "command/commands.h"
#include "command/options.h"
#include "libquilp.h"
#include "output/exit_status.h"
#include "output/result.h"

namespace quilp {
namespace {

int statusOfDetails(const std::string& id) {
  velMovieInfo_ info = velMovieInfo_();
  const int status = velGetMovieByID(id.c_str(), &info);
  velFreeMovieInfo(&info);
  return status != 0 ? status : kNothingFound;
}

}  // namespace

void addMovieCommands(CLI::App& app, int& status) {
  CLI::App* movie = app.add_subcommand("movie", "Movies")->require_subcommand(1);

  static Format format;
  static std::string keyword;
  static int count = kDefaultCount;
  CLI::App* search = movie->add_subcommand("search", "Search movies by keyword or release name");
  search->add_option("KEYWORD", keyword, "What to look for")->required();
  addCount(search, count);
  addFormat(search, format);
  search->callback([&status] {
    status = printDocument([] { return velPrintSearchMovie(keyword.c_str(), count); }, format);
  });

  static std::string id;
  CLI::App* show = movie->add_subcommand("show", "Show the details of one movie");
  show->add_option(
          "ID", id,
          "Identifier: as a search gave it; for an add-on, five characters in front of its "
          "own")
      ->required();
  addFormat(show, format);
  show->callback([&status] {
    status = printDocument(
        [] {
          // Printing tells only that it failed; asking once more tells how.
          return velPrintMovieByID(id.c_str()) == 0 ? 0 : statusOfDetails(id);
        },
        format);
  });
}

}  // namespace quilp
