#pragma once

#include <atomic>
#include <chrono>
#include <optional>

#include "plugin/reason.h"

namespace libquilp {

/// Ends a lookup from outside: at a point in time, or when another thread wishes it.
class Control {
 public:
  using Clock = std::chrono::steady_clock;

  Control();
  ~Control();
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  /// Before a lookup starts; none: without an end.
  void begin(std::optional<Clock::time_point> end) {
    end_ = end;
    over_.reset();
    cut_ = false;
  }

  /// From any thread, at any time, also in a signal handler.
  void cancel();

  /// Whether nothing more may be started.
  bool isOver() const { return cancelled_ || (end_ && Clock::now() >= *end_); }

  /// Whether so much time has passed since a call of this first saw the end. That is a cut. The
  /// time is for the use of what came before the end.
  bool isOverFor(std::chrono::milliseconds time);

  /// Milliseconds until the end, rounded up; -1 for no end.
  int millisecondsLeft() const;

  /// A descriptor that can be read after cancel(); -1 if there is none.
  int descriptor() const { return wake_; }

  /// Something was not done, or not to its end.
  void noteCut() { cut_ = true; }

  /// Why something was cut; kOk if nothing was.
  Reason reason() const;

 private:
  std::optional<Clock::time_point> end_;
  std::optional<Clock::time_point> over_;  // when isOverFor() saw the end
  std::atomic<bool> cancelled_{false};
  std::atomic<bool> cut_{false};
  int wake_;
};

}  // namespace libquilp
