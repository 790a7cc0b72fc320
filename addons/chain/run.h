#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "element.h"

namespace quilp::chain {

/// An add-on that is asked.
struct Source {
  std::string name;
  std::string program;
};

/// What an add-on is asked, and what came of it.
struct Question {
  const Source* source;
  std::vector<std::string> arguments;  // without "-o FILE"
  std::string root;                    // of the document

  std::optional<Elements> answer{};
  std::string why{};  // there is no answer
};

/// Asks all at once. Add-ons that have no answer by `end` are killed.
void ask(std::vector<Question>& questions, std::chrono::steady_clock::time_point end);

}  // namespace quilp::chain
