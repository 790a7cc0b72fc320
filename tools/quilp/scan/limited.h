#pragma once

#include <optional>

#include "plugin/observer.h"

namespace quilp {

/// What a lookup of a scan is given: it writes no messages of its own, and has a time limit.
class Limited {
 public:
  Limited();

  /// The limit of all lookups that start from now on; 0 for none.
  static void setSeconds(int seconds);

  libquilp::Context context();

 private:
  libquilp::Observer quiet_;
  std::optional<libquilp::Control> control_;
};

}  // namespace quilp
