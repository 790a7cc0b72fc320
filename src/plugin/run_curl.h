#pragma once

#include <optional>
#include <string>

#include "plugin/control.h"

namespace libquilp {

/// One run of curl, as a command of the system's shell.
struct CurlRun {
  std::string address;
  std::string command;
  std::string headers;  // the file that curl writes the headers to; empty for none
  std::string body;     // the file that curl writes the page to; empty for standard output
};

struct CurlEnd {
  int status = -1;                    // curl's exit status; -1 if no shell could be started
  std::optional<std::string> output;  // none if there was no pipe for it
};

/// Runs the command, under a guard if there is a control.
CurlEnd runCurl(const CurlRun& run, Control* control);

}  // namespace libquilp
