#pragma once

#include <optional>
#include <string>
#include <vector>

#include "output/format.h"
#include "scan/dress.h"
#include "scan/item.h"

namespace quilp {

struct ScanRequest {
  std::vector<std::string> paths;   // of folders and files
  std::vector<std::string> listed;  // names of files that need not be here
  std::optional<MediaKind> kind;    // none: what the names tell
  Format format = Format::kTable;
  int jobs = 0;     // 0: as many as there are processors
  int timeout = 0;  // seconds for a lookup; 0: no limit
  int candidates = 10;
  int sure = 80;
  std::string memory;
  std::string overrides;
  std::string report;
  DressRequest dress;
  bool replace = false;
  bool dryRun = false;
  std::string journal;  // empty: one in the current folder, named by the time
};

/// Finds out what media files are and prints a row for each. Returns the program's exit status.
/// Throws std::runtime_error when the only path cannot be read, or something cannot be written.
int scan(const ScanRequest& request);

}  // namespace quilp
