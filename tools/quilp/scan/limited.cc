#include "scan/limited.h"

namespace quilp {
namespace {

int limit = 0;

}  // namespace

void Limited::setSeconds(int seconds) { limit = seconds; }

Limited::Limited() {
  if (limit > 0) {
    control_.emplace();
    control_->begin(libquilp::Control::Clock::now() + std::chrono::seconds(limit));
  }
}

libquilp::Context Limited::context() { return {&quiet_, control_ ? &*control_ : nullptr}; }

}  // namespace quilp
