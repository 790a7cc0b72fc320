#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>

namespace quilp::kit {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

/// A random time from a half of `most` on.
Milliseconds jittered(Milliseconds most);

/// Keeps all processes of the machine to so many requests to a host in a span of time. A process
/// holds one of so many slots of a shared file while it asks, and nobody uses the slot until the
/// span has passed after the answer. A killed process loses its slot.
class Pace {
 public:
  /// The file is in this folder, else among the user's files in shared memory. Without any file the
  /// process keeps to the pace alone.
  Pace(const std::string& folder, const std::string& host, int requests, Milliseconds span);
  ~Pace();
  Pace(const Pace&) = delete;
  Pace& operator=(const Pace&) = delete;

  /// Waits for a slot and takes it. False if none gets free before `end`, or isDone() says that
  /// none is needed any more.
  bool take(Clock::time_point end, const std::function<bool()>& isDone);

  /// To be called as soon as there is an answer.
  void giveBack();

  /// Nobody takes a slot for that time.
  void pause(Milliseconds time);

  /// Makes a pause, a longer one each time until succeed() is called, and returns its length.
  Milliseconds backOff();
  void succeed();

 private:
  struct Head;
  struct Slot;
  bool open(const std::string& path);
  bool lock(int type, off_t offset, bool waits) const;
  Head head() const;
  Milliseconds pauseLeft() const;
  int lockSlot(Milliseconds& wait) const;
  bool sleep(Milliseconds time, const std::function<bool()>& isDone) const;

  int file_ = -1;
  int slots_;
  Milliseconds span_;
  int taken_ = -1;
  Clock::time_point next_{};  // without a file
};

}  // namespace quilp::kit
