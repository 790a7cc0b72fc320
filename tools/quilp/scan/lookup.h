#pragma once

#include <string>

#include "lookup/request.h"
#include "scan/media_files.h"
#include "scan/row.h"

namespace quilp {

const libquilp::Request& requestOf(MediaType type);

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
