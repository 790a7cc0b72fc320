#include <climits>
#include <cstdlib>
#include <string>

#include "check/check.h"
#include "command/commands.h"
#include "command/options.h"
#include "output/exit_status.h"

namespace quilp {
namespace {

/// strtod would read "nan", and exponents.
Take toSeconds(double& seconds) {
  return [&seconds](const std::string& text) {
    constexpr double kMost = 3600;
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    const bool isDecimal = text.find_first_not_of("0123456789.") == std::string::npos;
    if (!isDecimal || end == text.c_str() || *end != '\0' || value < 0.01 || value > kMost) {
      throw WrongUsage("--timeout: \"" + text + "\" is no number from 0.01 to 3600");
    }
    seconds = value;
  };
}

/// A number, without its leading zeros.
Take toDigits(const std::string& name, std::string& text) {
  return [name, &text](const std::string& value) {
    int number = 0;
    toNumber(name, number, INT_MIN, INT_MAX)(value);
    text = std::to_string(number);
  };
}

}  // namespace

void addAddonCheck(Command& addon) {
  static Wishes wishes;
  Command& command =
      addon.add("check", "Run an add-on through every request of its type and judge what it does");
  command.operands.push_back(
      {"PROGRAM", "The add-on, as the registry would name it", toText(wishes.program)});
  Option type = choice<std::string>(
      "type", wishes.type, "What it describes",
      {{"Movie", "Movie"}, {"TV", "TV"}, {"Music", "Music"}, {"KTV", "KTV"}, {"karaoke", "KTV"}});
  type.required = true;
  command.options = {
      type,
      {0, "keyword", "WORDS", "What a search finds something for (default: the)",
       toText(wishes.keyword)},
      {0, "season", "N", "A season that the first show found has (default: 1)",
       toDigits("--season", wishes.season)},
      {0, "episode", "N", "An episode of that season (default: 1)",
       toDigits("--episode", wishes.episode)},
      {0, "album", "TITLE", "A title that an album is found for (default: the)",
       toText(wishes.album)},
      {0, "artist", "NAME", "An artist (default: the first album's)", toText(wishes.artist)},
      {0, "file", "FILE", "A song file's path, which need not exist", toText(wishes.file)},
      {0, "timeout", "SECONDS", "Seconds that a request may take (default: 30)",
       toSeconds(wishes.timeout)},
      {0, "json", "", "Print the findings as JSON",
       [](const std::string&) { wishes.json = true; }}};
  addLanguage(command, wishes.language);
  command.run = [] { return check(wishes) ? 0 : kNothingFound; };
}

}  // namespace quilp
