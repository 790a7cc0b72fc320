#include "usage/command.h"

namespace quilp {

bool Option::isTyped(const std::string& word) const {
  return (letter != 0 && word == std::string("-") + letter) ||
         (!name.empty() && word == "--" + name);
}

std::vector<std::string> Command::wordsOfCommands() const {
  std::vector<std::string> words;
  for (const Command& command : commands) {
    words.push_back(command.word());
  }
  return words;
}

const Command* Command::find(const std::string& word) const {
  for (const Command& command : commands) {
    if (command.word() == word) {
      return &command;
    }
  }
  return nullptr;
}

const Option* Command::option(const std::string& typed) const {
  for (const Option& option : options) {
    if (option.isTyped(typed)) {
      return &option;
    }
  }
  return nullptr;
}

}  // namespace quilp
