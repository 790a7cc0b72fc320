#pragma once

#include <optional>
#include <string>

#include "plugin/reason.h"
#include "plugin/registry.h"

namespace libquilp {

/// How a lookup went. Which reason comes with what: see sentence().
struct Answer {
  std::optional<AddOn> addOn;  // the one that was asked; none for the built-in route
  int status = 0;              // what the exported function gives, or stores as the error
  Reason reason = Reason::kOk;
  int number = 0;       // the add-on's exit status or signal, curl's or the HTTP status, the season …
  std::string subject;  // the host, the missing root element, the episode …
};

/// Says in one line for people why there is nothing; empty for kOk.
std::string sentence(const Answer& answer);

/// A word for programs, which does not change.
const char* codeOf(Reason reason);

}  // namespace libquilp
