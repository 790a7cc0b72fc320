#pragma once

#include <optional>
#include <string>
#include <vector>

#include "explain/empty_reason.h"
#include "explain/transfer_log.h"
#include "output/format.h"

namespace quilp {

/// In how many rows a field is filled.
struct FieldCount {
  std::string name;
  int filled;
};

/// What a search would do, and did.
struct Explanation {
  /// The keyword as each route has it; music takes titles as they are.
  struct Keyword {
    std::string words;    // for an add-on
    std::string encoded;  // in an address
  };
  std::optional<Keyword> keyword;

  std::optional<std::string> section;  // the add-on's; none for the built-in route
  std::string whyBuiltIn;
  std::vector<std::string> command;
  std::optional<int> shellStatus;
  std::vector<Transfer> transfers;

  int rows = 0;
  std::vector<FieldCount> fields;
  std::optional<Reason> reason;  // for rows that are not there, or tell nothing
  int searchStatus = 0;          // what the search command would end with
};

/// False when it could not be written.
bool print(const Explanation& explanation, Format format);

}  // namespace quilp
