#pragma once

#include <optional>
#include <string>
#include <vector>

#include "plugin/control.h"

namespace libquilp {

/// One run of curl, as a command of the system's shell.
struct CurlRun {
  std::string address;
  std::string command;
  std::string headers;  // the file that curl writes the headers to; empty for none
  std::string body;     // the file that curl writes the page to; empty for standard output
};

/// The status of a curl that could not be started: no shell, no descriptor for its page.
inline constexpr int kNotStarted = -1;

struct CurlEnd {
  int status = kNotStarted;           // curl's exit status
  std::optional<std::string> output;  // none if there was no pipe for it
  std::string headers = {};           // of runCurls()
};

/// Runs the command, under a guard if there is a control.
CurlEnd runCurl(const CurlRun& run, Control* control);

/// Fetches pages concurrently by two runs of curl, under a guard. `command` is curl with its
/// options, of which one puts the headers before the page ("-i"). Returns an end for each address;
/// one without output for an empty address.
std::vector<CurlEnd> runCurls(const std::string& command, const std::vector<std::string>& addresses,
                              Control& control);

}  // namespace libquilp
