#pragma once

#include <string>

#include "output/format.h"
#include "scan/finder.h"
#include "scan/item.h"
#include "scan/row.h"
#include "scan/scan.h"

namespace quilp {

/// What a scan decides about one file.
struct Decision {
  MediaItem item;
  ScanRow row;
  int sure;  // the confidence that it takes
  libquilp::Answer whyNothing{};
  bool interrupted = false;
};

/// Decides as a scan of the file's folder does. A folder stands for the disc or album in it; a file
/// need not exist. Throws std::runtime_error where a scan has no row for it.
Decision decide(const ScanRequest& request, const std::string& file);

/// Prints what was read and where, every candidate with the parts of its score, and the decision.
/// Returns false when standard output cannot be written.
bool print(const Decision& decision, Format format);

}  // namespace quilp
