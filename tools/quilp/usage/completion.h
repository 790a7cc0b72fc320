#pragma once

#include <string>
#include <vector>

#include "usage/command.h"

namespace quilp {

/// Prints what the last of the words after the program's name may become, for completion by a
/// shell: each on a line, with a tab and its description where there is one. A line of ":" stands
/// for the names of files. False when that could not be written.
bool printCompletions(const Command& program, const std::vector<std::string>& words);

}  // namespace quilp
