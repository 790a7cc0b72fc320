#include "scan/interruption.h"

#include <unistd.h>

#include <cstdio>

namespace quilp {

Interruption::Interruption() {
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
  int signal = 0;
  while (sigwait(&signals_, &signal) == 0 && !over_) {
    if (wanted_.exchange(true)) {
      _exit(128 + signal);
    }
    std::fputs("\nquilp: ending after the lookups under way; once more to end at once\n", stderr);
  }
}

}  // namespace quilp
