#include "plugin/control.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

#include "plugin/descriptor.h"

namespace libquilp {

Control::Control() : wake_(aboveStandard(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))) {}

Control::~Control() {
  if (wake_ >= 0) {
    close(wake_);
  }
}

void Control::cancel() {
  cancelled_ = true;
  const std::uint64_t one = 1;
  if (write(wake_, &one, sizeof one) < 0) {
    return;  // it can be read already
  }
}

bool Control::isOverFor(std::chrono::milliseconds time) {
  if (!isOver()) {
    return false;
  }
  const auto now = Clock::now();
  over_ = over_.value_or(now);
  if (now - *over_ < time) {
    return false;
  }
  noteCut();
  return true;
}

int Control::millisecondsLeft() const {
  if (!end_) {
    return -1;
  }
  using Milliseconds = std::chrono::milliseconds;
  constexpr Milliseconds kMost(1000000000);
  const auto left = *end_ - Clock::now();
  if (left <= Clock::duration::zero()) {
    return 0;
  }
  return static_cast<int>(std::min(std::chrono::ceil<Milliseconds>(left), kMost).count());
}

Reason Control::reason() const {
  return !cut_ ? Reason::kOk : cancelled_ ? Reason::kCancelled : Reason::kTimedOut;
}

}  // namespace libquilp
