#pragma once

#include <string>

#include "lookup/answer.h"

namespace quilp {

/// Whether another scan may find more.
inline bool isUnsettled(const libquilp::Answer& answer) {
  return answer.reason != libquilp::Reason::kOk && answer.reason != libquilp::Reason::kNothingFound;
}

/// The result for one media file.
struct ScanRow {
  std::string file;
  std::string keyword;  // what was looked for
  std::string match;    // empty when nothing was found
  std::string year;
  std::string id;
  bool failed = false;        // it could not be looked up
  libquilp::Answer answer{};  // why there is no match

  /// Why it could not be looked up; empty when it could.
  std::string failure() const { return failed ? sentence(answer) : ""; }
};

}  // namespace quilp
