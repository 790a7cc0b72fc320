#pragma once

#include <string>

#include "lookup/request.h"
#include "scan/media_files.h"
#include "scan/row.h"

namespace quilp {

const libquilp::Request& requestOf(MediaType type);

/// Whether an add-on is asked for the type. Built-in lookups must not overlap.
bool hasAddOn(MediaType type);

/// Looks media files up by their names.
struct Lookup {
  MediaType type;
  bool byAddOn;
  int candidates;  // of these, the match is the one whose year is in the name, or else the first

  ScanRow operator()(const std::string& file) const;
};

}  // namespace quilp
