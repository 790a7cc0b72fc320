#include "scan/messages.h"

#include <unistd.h>

#include <cstdio>

#include "output/table.h"
#include "output/utf8.h"

namespace quilp {
namespace {

constexpr std::size_t kUsualColumns = 79;
constexpr char kToLineStart[] = "\r\x1B[K";

}  // namespace

Messages::Messages() : isTerminal_(isatty(STDERR_FILENO) == 1) {}

void Messages::say(const std::string& message) const {
  if (!message.empty()) {
    dprintf(STDERR_FILENO, "%squilp: %s\n", isTerminal_ ? kToLineStart : "",
            lineText(message).c_str());
  }
}

void Messages::showProgress(const std::string& text) const {
  if (isTerminal_) {
    const std::size_t columns = terminalColumns(STDERR_FILENO);
    const std::string line = fitted(lineText(text), columns > 0 ? columns - 1 : kUsualColumns);
    dprintf(STDERR_FILENO, "%s%s", kToLineStart, line.c_str());
  }
}

}  // namespace quilp
