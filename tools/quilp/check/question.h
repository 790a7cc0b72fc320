#pragma once

#include <string>
#include <vector>

#include "lookup/request.h"

namespace quilp {

/// A request, with the values that an add-on is asked about.
struct Question {
  std::string name;
  const libquilp::Request& request;
  std::vector<std::string> arguments;  // after the program, before "-o FILE"
  std::string hint;                    // the option that names something that has an answer
  bool guessed = false;                // nobody has named anything
  std::string id{};                    // that is asked for, where the document may tell it

  /// The arguments with another text: the value of the first option.
  std::vector<std::string> argumentsWith(const std::string& text) const;

  /// The value of the first option.
  const std::string& text() const;

  /// Whether that text is a keyword, which is cleaned before the add-on gets it.
  bool hasKeyword() const;
};

}  // namespace quilp
