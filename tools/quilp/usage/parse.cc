#include "usage/parse.h"

#include <getopt.h>

#include <algorithm>
#include <iostream>

#include "usage/help.h"
#include "usage/suggestion.h"

namespace quilp {
namespace {

constexpr int kFirstName = 256;  // what getopt_long gives for the first option with a name

/// A command line cut into operands and options, before it is known what the command has.
struct Line {
  struct Given {
    std::string option;  // "-n" or "--format"
    std::string value;
  };
  std::vector<Given> options;
  std::vector<std::string> operands;
  std::string unknownOption;
};

/// What each option of all commands is to getopt_long. One name has a value in all or in none.
class Options {
 public:
  explicit Options(const Command& program) {
    program.forEachOption([this](const Option& option) { add(option); });
    names_.push_back({});
  }
  const char* letters() const { return letters_.c_str(); }
  const ::option* names() const { return names_.data(); }
  std::string typed(int code) const {
    return code < kFirstName
               ? std::string("-") + static_cast<char>(code)
               : std::string("--") + names_[static_cast<std::size_t>(code - kFirstName)].name;
  }

 private:
  void add(const Option& option) {
    if (option.letter != 0 && letters_.find(option.letter) == std::string::npos) {
      letters_ += option.letter;
      letters_ += option.value.empty() ? "" : ":";
    }
    if (!option.name.empty() && !hasName(option.name)) {
      names_.push_back({option.name.c_str(), option.value.empty() ? no_argument : required_argument,
                        nullptr, kFirstName + static_cast<int>(names_.size())});
    }
  }
  bool hasName(const std::string& name) const {
    for (const ::option& known : names_) {
      if (name == known.name) {
        return true;
      }
    }
    return false;
  }

  std::string letters_ = "-:";  // operands in their place, and errors told apart
  std::vector<::option> names_;
};

Line cut(const Command& program, const std::vector<std::string>& words) {
  const Options known(program);
  Line line;
  std::vector<char*> argv = {const_cast<char*>("")};
  for (const std::string& word : words) {
    argv.push_back(const_cast<char*>(word.c_str()));
  }
  const int argc = static_cast<int>(argv.size());
  argv.push_back(nullptr);
  optind = 1;
  for (int at = optind, code;
       (code = getopt_long(argc, argv.data(), known.letters(), known.names(), nullptr)) >= 0;
       at = optind) {
    const std::string word = argv[static_cast<std::size_t>(at)];
    if (code == 1) {
      line.operands.emplace_back(optarg);
    } else if (code == ':') {
      throw WrongUsage("the option \"" + known.typed(optopt) + "\" needs a value");
    } else if (code != '?') {
      line.options.push_back({known.typed(code), optarg != nullptr ? optarg : ""});
    } else if (optopt >= kFirstName) {
      throw WrongUsage("the option \"" + known.typed(optopt) + "\" takes no value");
    } else if (line.unknownOption.empty()) {
      line.unknownOption = word.substr(0, word.find('='));
    }
  }
  line.operands.insert(line.operands.end(), argv.begin() + optind, argv.begin() + argc);
  return line;
}

[[noreturn]] void refuse(const Command& command, const std::string& message) {
  throw WrongUsage(message, command.name);
}

[[noreturn]] void refuseOption(const Command& program, const Command& command,
                               const std::string& word) {
  std::vector<std::string> known;
  const auto add = [&known](const Option& option) {
    if (std::find(known.begin(), known.end(), option.typed()) == known.end()) {
      known.push_back(option.typed());
    }
  };
  command.forEachOption(add);
  std::for_each(program.options.begin(), program.options.end(), add);
  refuse(command, noSuch("option", word, known));
}

void take(const Command& command, const Take& take, const std::string& value) {
  try {
    take(value);
  } catch (const WrongUsage& error) {
    refuse(command, error.what());
  }
}

/// Hands over operands from the first one on.
void takeOperands(const Command& command, const std::vector<std::string>& words,
                  std::size_t first) {
  std::size_t i = first;
  for (const Operand& operand : command.operands) {
    if (i == words.size() && operand.required) {
      refuse(command, operand.name + " is missing");
    }
    for (bool more = true; more && i < words.size(); more = operand.repeated) {
      take(command, operand.take, words[i++]);
    }
  }
  if (i < words.size()) {
    refuse(command, "\"" + words[i] + "\" is one word too many" +
                        (i > first ? "; put quotes around a name of several words" : ""));
  }
}

void takeOptions(const Command& program, const Command& command,
                 const std::vector<Line::Given>& given) {
  for (const Line::Given& one : given) {
    const Option* option = command.option(one.option);
    option = option != nullptr ? option : program.option(one.option);
    if (option == nullptr) {
      refuseOption(program, command, one.option);
    }
    if (option->take) {
      take(command, option->take, one.value);
    }
  }
  for (const Option& option : command.options) {
    bool found = !option.required;
    for (const Line::Given& one : given) {
      found = found || command.option(one.option) == &option;
    }
    if (!found) {
      refuse(command, "the option " + option.typed() + " is missing");
    }
  }
}

bool has(const Command& program, const Line& line, const char* option) {
  for (const Line::Given& one : line.options) {
    if (program.option(one.option) == program.option(option)) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::function<int()> parse(const Command& program, const std::vector<std::string>& given) {
  const Line line = cut(program, given);
  const std::vector<std::string>& words = line.operands;
  const bool helpFirst = !words.empty() && words.front() == "help";
  const bool wantsHelp = helpFirst || has(program, line, "--help");
  std::size_t next = helpFirst ? 1 : 0;
  const Command* command = &program;
  for (; !command->commands.empty() && next < words.size(); ++next) {
    const Command* inner = command->find(words[next]);
    if (inner == nullptr) {
      if (!line.unknownOption.empty() || command->run) {
        break;  // the word may be that option's value, or an operand
      }
      refuse(*command, noSuch("command", words[next], command->wordsOfCommands()));
    }
    command = inner;
  }
  if (!line.unknownOption.empty()) {
    refuseOption(program, *command, line.unknownOption);
  }
  if (has(program, line, "--version")) {
    return [] {
      std::cout << "quilp " QUILP_VERSION "\n";
      return std::cout.flush() ? 0 : 1;
    };
  }
  if (wantsHelp) {
    return [&program, command] { return printHelp(program, *command) ? 0 : 1; };
  }
  if (!command->commands.empty() && !command->run) {
    refuse(*command, "a command is missing; there are " + joined(command->wordsOfCommands()));
  }
  takeOptions(program, *command, line.options);
  takeOperands(*command, words, next);
  return [command] {
    try {
      return command->run();
    } catch (const WrongUsage& error) {
      refuse(*command, error.what());
    }
  };
}

}  // namespace quilp
