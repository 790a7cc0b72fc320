#include "command/time_limit.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <thread>

#include "command/options.h"
#include "output/exit_status.h"
#include "process/descendants.h"
#include "record/tape.h"

namespace quilp {
namespace {

using libquilp::Control;

constexpr useconds_t kStep = 10000;
int seconds = 0;
volatile std::sig_atomic_t interrupted = 0;

Control& control() {
  static Control control;
  return control;
}

void cancel(int /*signal*/) {
  interrupted = 1;
  startNothing();
  control().cancel();
}

/// After Ctrl-C, kills what lookups without a control are waiting for.
[[noreturn]] void endStarted() {
  pollfd wake = {control().descriptor(), POLLIN, 0};
  while (poll(&wake, 1, -1) <= 0) {
  }
  adoptDescendants();
  while (true) {
    if (seconds == 0) {
      killChildren();
    }
    usleep(kStep);
  }
}

void catchInterruption() {
  struct sigaction action = {};
  if (sigaction(SIGINT, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) {
    return;  // as in the background of a shell without job control
  }
  action = {};
  action.sa_handler = cancel;
  // The second Ctrl-C ends a program that cannot write what it found.
  action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
  sigaction(SIGINT, &action, nullptr);
  std::thread(endStarted).detach();  // it takes the signal when a lookup holds signals back
}

}  // namespace

void addTimeout(Command& command) {
  command.options.push_back({0, "timeout", "SECONDS",
                             "End all lookups after this time (default: no limit)",
                             toNumber("--timeout", seconds, 1, kMostSeconds)});
}

Control* beginLookup() {
  static std::optional<Control::Clock::time_point> end;
  static bool isFirst = true;
  if (isFirst) {
    isFirst = false;
    end = Control::Clock::now() + std::chrono::seconds(seconds);
    control();
    catchInterruption();
  }
  if (seconds == 0) {
    return nullptr;
  }
  control().begin(end);
  return &control();
}

void endLookup(libquilp::Answer& answer) {
  if (interrupted == 0) {
    return;
  }
  endDescendants();
  answer.reason = libquilp::Reason::kCancelled;
}

int statusAfterLookup(int otherwise) { return interrupted != 0 ? kInterrupted : otherwise; }

}  // namespace quilp
