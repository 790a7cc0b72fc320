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
  int number = 0;       // an exit status, a signal, an HTTP status, a season or an episode
  std::string subject;  // a host, a root element, or what keeps an add-on from being started
};

/// Says in one line for people why there is nothing; empty for kOk.
std::string sentence(const Answer& answer);

/// What curl's exit status tells of a fetch from a host.
std::string curlSentence(int exit, const std::string& host);

/// The reason as a word for programs, which does not change; see quilp(1).
const char* codeOf(const Answer& answer);

}  // namespace libquilp
