#pragma once

#include "usage/command.h"

namespace quilp {

/// Prints how a command is used to standard output; false when that could not be written.
bool printHelp(const Command& program, const Command& command);

}  // namespace quilp
