#include "plugin/outside.h"

namespace libquilp {

ProgramEnd askAddOn(char** argv, char** environment, Control* control) {
  return runProgram(argv, environment, control);
}

CurlEnd askCurl(const CurlRun& run, Control* control) { return runCurl(run, control); }

std::vector<CurlEnd> askCurls(const std::string& command, const std::vector<std::string>& addresses,
                              Control& control) {
  return runCurls(command, addresses, control);
}

}  // namespace libquilp
