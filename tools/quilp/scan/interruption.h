#pragma once

#include <pthread.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "scan/messages.h"

namespace quilp {

/// Watches for Ctrl-C: the first ends the scan after the current lookups, the second kills the
/// add-ons that these wait for, the third ends the program. Create it before other threads: a
/// thread that fetches a page would lose the signal.
class Interruption {
 public:
  explicit Interruption(const Messages& messages);
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  bool wanted() const { return wanted_; }

 private:
  void watch();
  bool wasSent();

  const Messages& messages_;
  sigset_t signals_;
  sigset_t before_;
  std::atomic<bool> wanted_{false};
  std::atomic<bool> over_{false};
  std::thread watcher_;
};

}  // namespace quilp
