#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <utility>
#include <vector>

#include "output/format.h"

namespace quilp {

inline constexpr int kDefaultCount = 10;

/// A decimal number, whatever zeros stand in front: a release name's "08" is eight.
CLI::Option* addNumber(CLI::App* command, const std::string& name, int& number,
                       const std::string& description);

/// "--format", with the formats that a command knows; the first is what `format` starts with.
void addFormat(CLI::App* command, Format& format,
               const std::vector<Format>& known = {Format::kXml, Format::kJson, Format::kTable});

/// An option whose value is one of several names; the first is what `value` starts with.
template <class Value>
void addChoice(CLI::App* command, const std::string& name, Value& value,
               const std::string& description,
               const std::vector<std::pair<std::string, Value>>& choices) {
  value = choices.front().second;
  std::string names;
  for (const auto& choice : choices) {
    names += (names.empty() ? "" : "|") + choice.first;
  }
  const auto choose = [&value, choices, name, names](const CLI::results_t& words) {
    for (const auto& choice : choices) {
      if (choice.first == words.back()) {
        value = choice.second;
        return true;
      }
    }
    throw CLI::ValidationError(name, words.back() + " is none of " + names);
  };
  command->add_option(name, choose, description + " (default: " + choices.front().first + ")")
      ->type_name(names);
}

/// "-n N", how many results are wanted.
void addCount(CLI::App* command, int& count);

}  // namespace quilp
