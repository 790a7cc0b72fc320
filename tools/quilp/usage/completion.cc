#include "usage/completion.h"

#include <algorithm>
#include <iostream>

namespace quilp {
namespace {

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

/// Prints candidates that go on from what is typed.
class Candidates {
 public:
  explicit Candidates(std::string typed) : typed_(std::move(typed)) {}

  void add(const std::string& word, const std::string& description) const {
    if (startsWith(word, typed_)) {
      std::cout << word << (description.empty() ? "" : "\t") << description << '\n';
    }
  }

  /// `value` is what the help calls a value: "FILE", "xml|json".
  void addValues(const std::string& value, const std::string& before = "") const {
    if (value == "FILE" || value == "PATH" || value == "PROGRAM" || value == "DIR") {
      std::cout << ":\n";
    } else if (value.find('|') != std::string::npos || (value >= "a" && value < "{")) {
      for (std::size_t at = 0, end = 0; end != std::string::npos; at = end + 1) {
        end = value.find('|', at);
        add(before + value.substr(at, end - at), "");
      }
    }
  }

 private:
  std::string typed_;
};

/// What the words before the last one say.
struct Place {
  const Command* command;
  const Option* option = nullptr;  // that waits for its value
  std::size_t operands = 0;
  bool hasHelp = false;
};

Place placeOf(const Command& program, const std::vector<std::string>& words) {
  Place place = {&program};
  bool noOptions = false;
  for (auto word = words.begin(); word + 1 < words.end(); ++word) {
    if (place.option != nullptr) {
      place.option = nullptr;
    } else if (!noOptions && word->size() > 1 && word->front() == '-') {
      noOptions = *word == "--";
      program.forEachOption([&](const Option& option) {
        place.option = option.isTyped(*word) && !option.value.empty() ? &option : place.option;
      });
    } else if (const Command* command = place.command->find(*word)) {
      place.command = command;
    } else if (place.command->run) {
      ++place.operands;
    } else {
      place.hasHelp = *word == "help";
    }
  }
  // The same option may have other values elsewhere.
  const Option* own =
      place.option != nullptr ? place.command->option(place.option->typed()) : nullptr;
  place.option = own != nullptr ? own : place.option;
  return place;
}

}  // namespace

bool printCompletions(const Command& program, const std::vector<std::string>& words) {
  const Place place = placeOf(program, words);
  const Command& command = *place.command;
  const std::string& typed = words.back();
  const Candidates candidates(typed);
  const std::string name = typed.substr(0, typed.find('='));
  const Option* assigned = name.size() < typed.size() ? command.option(name) : nullptr;
  if (place.option != nullptr) {
    candidates.addValues(place.option->value);
  } else if (assigned != nullptr) {
    candidates.addValues(assigned->value, name + '=');
  } else if (startsWith(typed, "-")) {
    for (const Command* one : {&command, &program}) {
      for (const Option& option : one->options) {
        candidates.add(option.typed(), option.description);
      }
    }
  } else {
    if (place.operands == 0) {
      for (const Command& inner : command.commands) {
        candidates.add(inner.word(), inner.description);
      }
    }
    if (&command == &program && !place.hasHelp) {
      candidates.add("help", "How a command is used");
    }
    if (!place.hasHelp && !command.operands.empty()) {
      const std::size_t last = command.operands.size() - 1;
      if (place.operands <= last || command.operands[last].repeated) {
        const Operand& operand = command.operands[std::min(place.operands, last)];
        candidates.addValues(operand.values.empty() ? operand.name : operand.values);
      }
    }
  }
  return static_cast<bool>(std::cout.flush());
}

}  // namespace quilp
