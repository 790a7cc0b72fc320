#include <string>

#include "command/commands.h"
#include "command/identifier.h"
#include "command/options.h"
#include "command/print_answer.h"
#include "command/time_limit.h"
#include "lookup/requests.h"

namespace quilp {

using libquilp::Values;

void addMovieCommands(Command& program) {
  Command& movie = program.add("movie", "Movies");

  static Format format;
  static std::string keyword;
  static int count = kDefaultCount;
  Command& search = movie.add("search", "Search movies by keyword or release name");
  search.operands.push_back({"KEYWORD", "What to look for", toText(keyword)});
  addCount(search, count);
  addFormat(search, format);
  addTimeout(search);
  search.run = [] {
    return printAnswer(libquilp::kMovieSearch, Values::search(keyword.c_str(), count), format);
  };

  static Identifier identifier;
  Command& show = movie.add("show", "Show the details of one movie");
  identifier.addTo(show, "Identifier of the movie");
  addFormat(show, format);
  addTimeout(show);
  show.run = [] {
    const std::string id = identifier.forRequest(libquilp::kMovieDetails);
    return printAnswer(libquilp::kMovieDetails, Values::title(id.c_str()), format);
  };
}

}  // namespace quilp
