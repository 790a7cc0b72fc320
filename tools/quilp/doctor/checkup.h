#pragma once

#include <string>
#include <vector>

namespace quilp {

/// One thing that was looked at on this appliance.
struct Diagnosis {
  enum class State { kOk, kWarning, kFault };

  std::string subject;  // "registry"
  State state = State::kOk;
  std::string what;
  std::string remedy = {};  // what to do; empty for nothing
};

/// Looks at all that lookups need: registry, add-ons, settings, keys, catalogue, cache, curl and
/// folders. Sends no request.
std::vector<Diagnosis> checkUp();

}  // namespace quilp
