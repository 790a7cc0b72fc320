#include <unistd.h>

#include <iostream>
#include <string>

#include "command/commands.h"
#include "command/options.h"
#include "libquilp.h"
#include "output/exit_status.h"
#include "output/utf8.h"

namespace quilp {

void addKeywordCommand(Command& program) {
  static List names;
  Command& keyword = program.add(
      "keyword", "Clean names: for each a line of its words, a tab, and the words encoded");
  names.addTo(keyword, "NAME", "Names of video releases, without file extension");
  keyword.run = [] {
    const bool isTerminal = isatty(STDOUT_FILENO) == 1;
    for (const std::string& name : names.words()) {
      const std::string words = ProcessKeyword(name.c_str(), 0);
      std::cout << (isTerminal ? lineText(words) : words) << '\t' << ProcessKeyword(name.c_str(), 1)
                << '\n';
    }
    return std::cout.flush() ? 0 : kNothingFound;
  };
}

}  // namespace quilp
