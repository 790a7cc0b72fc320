#include "command/time_limit.h"

#include <unistd.h>

#include <csignal>
#include <optional>
#include <thread>

#include "command/options.h"
#include "output/exit_status.h"

namespace quilp {
namespace {

using libquilp::Control;

constexpr int kMostSeconds = 86400;
int seconds = 0;
volatile std::sig_atomic_t interrupted = 0;

Control& control() {
  static Control control;
  return control;
}

void cancel(int /*signal*/) {
  interrupted = 1;
  control().cancel();
}

void catchInterruption() {
  struct sigaction action = {};
  if (sigaction(SIGINT, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) {
    return;  // as in the background of a shell without job control
  }
  action = {};
  action.sa_handler = cancel;
  sigaction(SIGINT, &action, nullptr);
  // The thread of a lookup holds signals back.
  std::thread([] {
    while (true) {
      pause();
    }
  }).detach();
}

}  // namespace

void addTimeout(Command& command) {
  command.options.push_back({0, "timeout", "SECONDS",
                             "End all lookups after this time (default: no limit)",
                             toNumber("--timeout", seconds, 1, kMostSeconds)});
}

Control* beginLookup() {
  if (seconds == 0) {
    return nullptr;
  }
  static std::optional<Control::Clock::time_point> end;
  if (!end) {
    end = Control::Clock::now() + std::chrono::seconds(seconds);
    control();
    catchInterruption();
  }
  control().begin(end);
  return &control();
}

int statusAfterLookup(int otherwise) { return interrupted != 0 ? kInterrupted : otherwise; }

}  // namespace quilp
