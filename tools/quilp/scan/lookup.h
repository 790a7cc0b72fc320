#pragma once

#include <string>

#include "scan/media_files.h"
#include "scan/row.h"

namespace quilp {

/// Whether an add-on answers for the type. Without one, two lookups must not overlap.
bool hasAddOn(MediaType type);

/// Looks media files up by their names.
struct Lookup {
  MediaType type;
  bool byAddOn;
  int candidates;  // of so many, the one whose year stands in the name is the match, or the first

  ScanRow operator()(const std::string& file) const;
};

}  // namespace quilp
