#include "output/result.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

#include "output/captured_output.h"
#include "output/document.h"
#include "output/exit_status.h"
#include "output/json_output.h"

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

int printDocument(const std::function<int()>& print, Format format) {
  CapturedOutput output;
  const int status = print();
  const std::string document = output.take();
  if (!document.empty() && !write(document, format)) {
    throw std::system_error(errno, std::generic_category(), "cannot write");
  }
  if (status != 0) {
    return status;
  }
  return holdsText(document) ? 0 : kNothingFound;
}

}  // namespace quilp
