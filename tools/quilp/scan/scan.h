#pragma once

#include <string>

#include "output/format.h"
#include "scan/media_files.h"

namespace quilp {

struct ScanRequest {
  std::string folder;
  MediaType type = MediaType::kMovie;
  Format format = Format::kTable;
  int jobs = 1;
  int candidates = 3;
  std::string journal;
};

struct ScanOutcome {
  int status;
  bool foundNothing;
};

/// Looks the media files of a folder up and prints a row for each. Throws std::runtime_error when
/// the folder cannot be read, or something cannot be written.
ScanOutcome scan(const ScanRequest& request);

}  // namespace quilp
