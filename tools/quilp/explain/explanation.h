#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lookup/answer.h"
#include "output/format.h"
#include "plugin/observer.h"

namespace quilp {

/// In how many rows a field is filled.
struct FieldCount {
  std::string name;
  int filled;
};

/// How a lookup went.
struct Explanation {
  /// The keyword as each route has it; music takes titles as they are.
  struct Keyword {
    std::string words;    // for an add-on
    std::string encoded;  // in an address
  };
  std::optional<Keyword> keyword;

  libquilp::Answer answer;
  std::string whyBuiltIn;
  std::vector<std::string> command;
  std::optional<int> addOnStatus;
  std::vector<libquilp::Fetch> fetches;
  int rows = 0;
  std::vector<FieldCount> fields;
  int exitStatus = 0;  // the command's
};

/// False when it could not be written.
bool print(const Explanation& explanation, Format format);

}  // namespace quilp
