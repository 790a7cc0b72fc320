#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "output/format.h"
#include "usage/command.h"
#include "usage/suggestion.h"

// Options and operands that several commands have.

namespace quilp {

inline constexpr int kDefaultCount = 10;

Take toText(std::string& text);

/// Reads a decimal number, also one with leading zeros, such as "08" of a release name. Messages
/// call it `name`.
Take toNumber(const std::string& name, int& number, int least, int most);

/// "-n N", how many results are wanted.
void addCount(Command& command, int& count);

/// "-l LANG" of TV.
void addLanguage(Command& command, std::string& language);

/// "--format", with the formats that a command knows, the default first.
void addFormat(Command& command, Format& format,
               const std::vector<Format>& known = {Format::kXml, Format::kJson, Format::kTable});

bool equalsWithoutCase(const std::string& a, const std::string& b);

/// The values of an option and their names. Case does not matter. Of several names for one value,
/// messages use the first.
template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

template <class Value>
Option choice(const std::string& name, Value& value, const std::string& description,
              const Choices<Value>& choices) {
  std::vector<std::string> names;
  std::string shape;
  for (auto one = choices.begin(); one != choices.end(); ++one) {
    const bool isFirst = std::none_of(
        choices.begin(), one, [one](const auto& before) { return before.second == one->second; });
    if (isFirst) {
      names.push_back(one->first);
      shape += (shape.empty() ? "" : "|") + one->first;
    }
  }
  const auto choose = [&value, name, choices, names](const std::string& word) {
    for (const auto& [known, meant] : choices) {
      if (equalsWithoutCase(known, word)) {
        value = meant;
        return;
      }
    }
    throw WrongUsage(noSuch(name, word, names));
  };
  return {0, name, shape, description, choose};
}

/// Operands that may come from standard input instead.
class List {
 public:
  /// "NAME...", where "-" stands for the lines of standard input, and "-0": there are strings there
  /// that end with a zero byte.
  void addTo(Command& command, const std::string& name, const std::string& description);

  using Visit = std::function<void(const std::string&)>;

  /// Calls visit(word) for each, as soon as it is read. Throws WrongUsage when there is none, nor a
  /// list.
  void forEach(const Visit& visit) const { forEach(visit, visit); }

  /// The same, with words from standard input apart.
  void forEach(const Visit& visitOperand, const Visit& visitInput) const;

  std::vector<std::string> words() const;
  bool isGiven() const { return zeros_ || !words_.empty(); }

 private:
  std::string name_;
  std::vector<std::string> words_;
  bool zeros_ = false;
};

}  // namespace quilp
