#include <set>
#include <string>

#include "check/check.h"
#include "command/commands.h"
#include "command/options.h"
#include "output/exit_status.h"

namespace quilp {
namespace {

/// "nan" would be within any range.
std::string isDecimal(const std::string& text) {
  return text.find_first_not_of("0123456789.") == std::string::npos ? "" : "not a number: " + text;
}

}  // namespace

void addAddonCheck(CLI::App* addon, int& status) {
  static Wishes wishes;
  CLI::App* command = addon->add_subcommand(
      "check", "Run an add-on through every request of its type and judge what it does");
  // A zero byte is the parser's mark behind an argument.
  const auto text = [command](const std::string& name, std::string& value,
                              const std::string& description) {
    return command->add_option_function<std::string>(
        name, [&value](const std::string& given) { value = given.substr(0, given.find('\0')); },
        description);
  };
  text("PROGRAM", wishes.program, "The add-on, as the registry would name it")->required();
  text("--type", wishes.type, "What it describes: Movie, TV, Music or KTV")
      ->required()
      ->check(CLI::IsMember(std::set<std::string>{"KTV", "Movie", "Music", "TV"}));
  text("--keyword", wishes.keyword, "What a search finds something for (default: the)");
  text("-l", wishes.language, "Language for a TV add-on (default: the one configured for it)");
  static int season = 0;
  static int episode = 0;
  addNumber(command, "--season", season, "A season that the first show found has (default: 1)")
      ->each([](const std::string& given) { wishes.season = given; });
  addNumber(command, "--episode", episode, "An episode of that season (default: 1)")
      ->each([](const std::string& given) { wishes.episode = given; });
  text("--album", wishes.album, "A title that an album is found for (default: the)");
  text("--artist", wishes.artist, "An artist (default: the first album's)");
  text("--file", wishes.file, "A song file's path, which need not exist");
  command->add_option("--timeout", wishes.timeout, "Seconds that a request may take")
      ->capture_default_str()
      ->check(CLI::Validator(isDecimal, ""))
      ->check(CLI::Range(0.01, 3600.0));
  command->add_flag("--json", wishes.json, "Print the findings as JSON");
  command->callback([&status] {
    wishes.season = wishes.season.empty() ? "" : std::to_string(season);
    wishes.episode = wishes.episode.empty() ? "" : std::to_string(episode);
    status = check(wishes) ? 0 : kNothingFound;
  });
}

}  // namespace quilp
