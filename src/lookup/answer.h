#pragma once

#include <optional>
#include <string>

#include "plugin/reason.h"
#include "plugin/registry.h"

namespace libquilp {

/// The outcome of a lookup. sentence() shows which members each reason uses.
struct Answer {
  std::optional<AddOn> addOn;  // the add-on that ran; none for the built-in route
  int status = 0;              // result, or `error`, of the exported function
  Reason reason = Reason::kOk;
  int number = 0;       // an exit status, a signal, an HTTP status, a season or an episode
  std::string subject;  // a host, a root element, or why an add-on could not be started
};

/// One line for people that explains why nothing was found; empty for kOk.
std::string sentence(const Answer& answer);

/// The reason for curl's exit status after a fetch from a host.
std::string curlSentence(int exit, const std::string& host);

/// A stable word for the reason, for programs; see quilp(1).
const char* codeOf(const Answer& answer);

}  // namespace libquilp
