#include "usage/help.h"

#include <algorithm>
#include <iostream>

namespace quilp {
namespace {

constexpr std::size_t kWidestLeft = 24;

/// Lines of two columns under a heading; nothing without lines.
struct Section {
  std::string heading;
  std::vector<std::pair<std::string, std::string>> lines{};

  void print() const {
    if (lines.empty()) {
      return;
    }
    std::cout << '\n' << heading << ":\n";
    for (const auto& [left, right] : lines) {
      const bool fits = left.size() <= kWidestLeft;
      std::cout << "  " << left << (fits ? "" : "\n  ")
                << std::string(kWidestLeft + 2 - (fits ? left.size() : 0), ' ') << right << '\n';
    }
  }
};

std::string shape(const Operand& operand) {
  const std::string name = operand.name + (operand.repeated ? "..." : "");
  return operand.required ? name : '[' + name + ']';
}

std::string shape(const Option& option) {
  std::string text = option.letter != 0 ? std::string("-") + option.letter : "";
  text += option.name.empty() ? "" : (text.empty() ? "--" : ", --") + option.name;
  return option.value.empty() ? text : text + ' ' + option.value;
}

}  // namespace

bool printHelp(const Command& program, const Command& command) {
  std::cout << "Usage: " << command.name;
  Section commands{"Commands"};
  for (const Command& inner : command.commands) {
    commands.lines.emplace_back(inner.word(), inner.description);
  }
  Section operands{"Operands"};
  for (const Operand& operand : command.operands) {
    std::cout << ' ' << shape(operand);
    operands.lines.emplace_back(operand.name, operand.description);
  }
  Section options{"Options"};
  for (const Command* one : {&command, &program}) {
    for (const Option& option : one->options) {
      options.lines.emplace_back(shape(option), option.description);
      if (option.required) {
        std::cout << ' ' << shape(option);
      }
    }
    if (&command == &program) {
      break;
    }
  }
  const char* const commandShape = command.commands.empty() ? ""
                                   : command.run            ? "|COMMAND"
                                                            : " COMMAND";
  std::cout << commandShape << " [OPTION...]\n\n" << command.description << '\n';
  commands.print();
  operands.print();
  options.print();
  std::cout << (command.footer.empty() ? "" : "\n" + command.footer);
  return static_cast<bool>(std::cout.flush());
}

}  // namespace quilp
