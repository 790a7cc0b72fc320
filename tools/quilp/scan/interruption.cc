#include "scan/interruption.h"

#include <unistd.h>

#include <ctime>

#include "process/descendants.h"

namespace quilp {

Interruption::Interruption(const Messages& messages) : messages_(messages) {
  sigemptyset(&signals_);
  sigaddset(&signals_, SIGINT);
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
  watcher_ = std::thread([this] { watch(); });
}

Interruption::~Interruption() {
  over_ = true;
  pthread_kill(watcher_.native_handle(), SIGINT);
  watcher_.join();
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void Interruption::watch() {
  if (!wasSent()) {
    return;
  }
  wanted_ = true;
  messages_.say("ending after the lookups under way; once more to end those, too");
  if (!wasSent()) {
    return;
  }
  // An add-on may never end, and what it left running must not outlive the scan.
  adoptDescendants();
  constexpr timespec kStep = {0, 20000000};
  do {
    killChildren();
  } while (sigtimedwait(&signals_, nullptr, &kStep) < 0);
  if (!over_) {
    _exit(128 + SIGINT);
  }
  endDescendants();
}

bool Interruption::wasSent() {
  int signal = 0;
  return sigwait(&signals_, &signal) == 0 && !over_;
}

}  // namespace quilp
