#pragma once

#include <deque>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quilp {

/// The command line is wrong. what() names the wrong word.
class WrongUsage : public std::runtime_error {
 public:
  explicit WrongUsage(const std::string& message, std::string command = "quilp")
      : std::runtime_error(message), command_(std::move(command)) {}

  /// The command as far as it was understood: "quilp movie".
  const std::string& command() const { return command_; }

 private:
  std::string command_;
};

/// Takes a value, or throws WrongUsage.
using Take = std::function<void(const std::string& value)>;

struct Option {
  char letter = 0;      // "n" of "-n"; 0 for none
  std::string name{};   // "format" of "--format"; empty for none
  std::string value{};  // what the help calls its value: "N", "xml|json"; empty for a flag
  std::string description{};
  Take take{};
  bool required = false;

  /// As it is typed: the name, or else the letter.
  std::string typed() const { return name.empty() ? std::string("-") + letter : "--" + name; }
  bool isTyped(const std::string& word) const;
};

struct Operand {
  std::string name;
  std::string description;
  Take take;
  bool required = true;
  bool repeated = false;  // only the last one may be
  std::string values{};   // for completion: "one|other"; its name tells if empty
};

/// The program or one of its commands. It has commands of its own, a function to run, or both: an
/// operand that is no command's word is then its own.
struct Command {
  std::string name;  // in full: "quilp movie search"
  std::string description;
  std::vector<Option> options{};
  std::vector<Operand> operands{};
  std::deque<Command> commands{};
  std::function<int()> run{};  // returns the exit status
  std::string footer{};

  Command& add(const std::string& word, const std::string& summary) {
    commands.push_back({name + ' ' + word, summary});
    return commands.back();
  }

  /// Its own word.
  std::string word() const { return name.substr(name.rfind(' ') + 1); }

  std::vector<std::string> wordsOfCommands() const;

  /// Null when there is no such command.
  const Command* find(const std::string& word) const;

  /// Null when there is no such option, "-n" or "--format".
  const Option* option(const std::string& typed) const;

  /// Calls visit(option) for its options and those of all commands below.
  template <class Visit>
  void forEachOption(Visit visit) const {
    for (const Option& option : options) {
      visit(option);
    }
    for (const Command& command : commands) {
      command.forEachOption(visit);
    }
  }
};

}  // namespace quilp
