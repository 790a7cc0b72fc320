#pragma once

#include "scan/scan.h"
#include "usage/command.h"

namespace quilp {

/// The options that a match depends on, and the time limit of its lookups.
void addJudging(Command& command, ScanRequest& request);

}  // namespace quilp
