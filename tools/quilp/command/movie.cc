#include <string>

#include "command/commands.h"
#include "command/identifier.h"
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

void addMovieCommands(Command& program) {
  Command& movie = program.add("movie", "Movies");

  static Format format;
  static std::string keyword;
  static int count = kDefaultCount;
  Command& search = movie.add("search", "Search movies by keyword or release name");
  search.operands.push_back({"KEYWORD", "What to look for", toText(keyword)});
  addCount(search, count);
  addFormat(search, format);
  search.run = [] {
    return printDocument([] { return velPrintSearchMovie(keyword.c_str(), count); }, format);
  };

  static Identifier identifier;
  Command& show = movie.add("show", "Show the details of one movie");
  identifier.addTo(show, "Identifier of the movie");
  addFormat(show, format);
  show.run = [] {
    const std::string id = identifier.forLibrary(libquilp::kMovieMedia);
    return printDocument(
        [&id] {
          // Printing tells only that it failed; asking once more tells how.
          return velPrintMovieByID(id.c_str()) == 0 ? 0 : statusOfDetails(id);
        },
        format);
  };
}

}  // namespace quilp
