#pragma once

#include <string>
#include <vector>

#include "output/format.h"
#include "scan/media_files.h"

namespace quilp {

struct ScanRequest {
  std::vector<std::string> paths;  // of folders and files
  MediaType type = MediaType::kMovie;
  Format format = Format::kTable;
  int jobs = 1;
  int candidates = 3;
  std::string journal;
};

/// Looks media files up and prints a row for each. Returns the program's exit status. Throws
/// std::runtime_error when the only path cannot be read, or something cannot be written.
int scan(const ScanRequest& request);

}  // namespace quilp
