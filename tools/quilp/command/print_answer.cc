#include "command/print_answer.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

#include "command/time_limit.h"
#include "output/document.h"
#include "output/exit_status.h"
#include "output/json_output.h"
#include "output/message.h"
#include "platform/why_nothing.h"

namespace quilp {
namespace {

bool write(const std::string& document, Format format) {
  switch (format) {
    case Format::kJson:
      return printJson(jsonOfDocument(document));
    case Format::kTable:
      return printAsTable(document);
    default:
      break;
  }
  return std::fwrite(document.data(), 1, document.size(), stdout) == document.size() &&
         std::fflush(stdout) == 0;
}

}  // namespace

int printAnswer(const libquilp::Request& request, const libquilp::Values& values, Format format) {
  libquilp::Observer quiet;
  libquilp::PrintedAnswer answer = request.print(request, values, {&quiet, beginLookup()});
  endLookup(answer);
  if (answer.document && !write(*answer.document, format)) {
    throw std::system_error(errno, std::generic_category(), "cannot write");
  }
  tell(whyNothing(answer, request.media));
  return statusAfterLookup(exitStatusOf(answer));
}

}  // namespace quilp
