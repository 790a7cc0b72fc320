#pragma once

#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigset_t is POSIX

#include <functional>
#include <string>
#include <vector>

namespace quilp {

/// Runs curl, and ends it when a signal asks this program to end. Signals wait while this object
/// lives, so that files can be left in order.
class Curl {
 public:
  Curl();
  ~Curl();
  Curl(const Curl&) = delete;
  Curl& operator=(const Curl&) = delete;

  /// Returns the exit status, 127 where curl cannot be started; calls watch() a few times a second
  /// meanwhile. No shell reads the arguments.
  int run(const std::vector<std::string>& arguments, const std::function<void()>& watch);

  /// The signal that asked this program to end; 0 for none.
  int signal() const { return signal_; }

 private:
  sigset_t signals_;
  sigset_t before_;
  int signal_ = 0;
};

}  // namespace quilp
