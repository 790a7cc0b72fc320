#include "scan/messages.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "output/utf8.h"

namespace quilp {
namespace {

constexpr char kToLineStart[] = "\r\x1B[K";

}  // namespace

Messages::Messages()
    : output_(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)),
      isTerminal_(isatty(STDERR_FILENO) == 1) {
  const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (output_ >= 0 && null >= 0) {
    dup2(null, STDERR_FILENO);
  }
  close(null);
}

Messages::~Messages() {
  if (output_ >= 0) {
    dup2(output_, STDERR_FILENO);
    close(output_);
  }
}

void Messages::say(const std::string& message) const {
  dprintf(output_, "%squilp: %s\n", isTerminal_ ? kToLineStart : "", lineText(message).c_str());
}

void Messages::showProgress(const std::string& text) const {
  if (isTerminal_) {
    dprintf(output_, "%s%s", kToLineStart, lineText(text).c_str());
  }
}

}  // namespace quilp
