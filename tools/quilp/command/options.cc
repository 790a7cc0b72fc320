#include "command/options.h"

#include <algorithm>
#include <string_view>

namespace quilp {
namespace {

constexpr int kMostResults = 10000;

// The parser would take a number with a zero in front for an octal one, and nothing for 0.
std::string toDecimal(std::string& text) {
  const std::size_t sign = text.substr(0, 1) == "-" ? 1 : 0;
  if (text.size() == sign || text.find_first_not_of("0123456789", sign) != std::string::npos) {
    return "not a number: " + text;
  }
  text.erase(sign, std::min(text.find_first_not_of('0', sign), text.size() - 1) - sign);
  return {};
}

const char* nameOf(Format format) {
  switch (format) {
    case Format::kJson:
      return "json";
    case Format::kTable:
      return "table";
    case Format::kCsv:
      return "csv";
    case Format::kXml:
      break;
  }
  return "xml";
}

}  // namespace

CLI::Option* addNumber(CLI::App* command, const std::string& name, int& number,
                       const std::string& description) {
  return command->add_option(name, number, description)->transform(CLI::Validator(toDecimal, ""));
}

void addFormat(CLI::App* command, Format& format, const std::vector<Format>& known) {
  std::vector<std::pair<std::string, Format>> choices;
  choices.reserve(known.size());
  for (const Format one : known) {
    choices.emplace_back(nameOf(one), one);
  }
  addChoice(command, "--format", format, "How the result is printed", choices);
}

void addCount(CLI::App* command, int& count) {
  addNumber(command, "-n", count, "Results wanted")
      ->capture_default_str()
      ->check(CLI::Range(1, kMostResults));
}

}  // namespace quilp
