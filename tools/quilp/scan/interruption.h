#pragma once

#include <pthread.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "scan/messages.h"

namespace quilp {

/// Watches for Ctrl-C: the first asks for an end after the lookups under way, the second ends what
/// these wait for, the third ends the program. Made before other threads are started, so that none
/// of them gets the signal: while the library fetches a page, it would be lost.
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
