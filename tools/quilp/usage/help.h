#pragma once

#include "usage/command.h"

namespace quilp {

/// Prints the help of a command to standard output. Returns false when that cannot be written.
bool printHelp(const Command& program, const Command& command);

}  // namespace quilp
