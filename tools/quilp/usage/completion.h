#pragma once

#include <string>
#include <vector>

#include "usage/command.h"

namespace quilp {

/// Prints the completions of the last word, for a shell. `words` are those after the program's
/// name. Each line is a word, or a word, a tab and its description. A line ":" stands for file
/// names. Returns false when standard output cannot be written.
bool printCompletions(const Command& program, const std::vector<std::string>& words);

}  // namespace quilp
