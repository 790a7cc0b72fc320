#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "command/commands.h"
#include "libquilp.h"
#include "output/exit_status.h"
#include "output/utf8.h"

namespace quilp {

void addKeywordCommand(CLI::App& app, int& status) {
  static std::vector<std::string> names;
  CLI::App* keyword = app.add_subcommand(
      "keyword", "Clean names: for each a line of its words, a tab, and the words encoded");
  keyword->add_option("NAME", names, "Names of video releases, without file extension")->required();
  keyword->callback([&status] {
    const bool isTerminal = isatty(STDOUT_FILENO) == 1;
    for (const std::string& name : names) {
      const std::string words = ProcessKeyword(name.c_str(), 0);
      std::cout << (isTerminal ? lineText(words) : words) << '\t' << ProcessKeyword(name.c_str(), 1)
                << '\n';
    }
    status = std::cout.flush() ? 0 : kNothingFound;
  });
}

}  // namespace quilp
