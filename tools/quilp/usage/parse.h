#pragma once

#include "usage/command.h"

namespace quilp {

/// Reads a command line and passes its values to the command's options and operands. Returns the
/// function to call next, which returns the exit status. Throws WrongUsage.
///
/// Options may stand anywhere, also before the command; after "--" all words are operands. "help"
/// before a command means the same as --help.
std::function<int()> parse(const Command& program, const std::vector<std::string>& given);

}  // namespace quilp
