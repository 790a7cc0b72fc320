#pragma once

#include <string>

namespace quilp {

/// What a scan tells of one media file.
struct ScanRow {
  std::string file;
  std::string keyword;  // what was looked for
  std::string match;    // empty when nothing was found
  std::string year;
  std::string id;
  std::string failure;  // why it could not be looked up; empty when it could
};

}  // namespace quilp
