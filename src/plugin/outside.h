#pragma once

#include "plugin/run_curl.h"
#include "plugin/run_program.h"

// The one place at which lookups start programs: an add-on, or curl. A program may link three
// functions of its own instead of these, which keep what was said, or answer themselves.

namespace libquilp {

/// Runs an add-on; argv ends with "-o" FILE.
ProgramEnd askAddOn(char** argv, char** environment, Control* control);

/// Runs curl.
CurlEnd askCurl(const CurlRun& run, Control* control);

/// Fetches pages by few runs of curl: see runCurls().
std::vector<CurlEnd> askCurls(const std::string& command, const std::vector<std::string>& addresses,
                              Control& control);

}  // namespace libquilp
