#pragma once

#include "usage/command.h"

namespace quilp {

/// Reads a command line and hands its values over. Returns what is left to do, which gives the exit
/// status. Throws WrongUsage.
///
/// Options may stand anywhere, also before the command; after "--" all words are operands. "help"
/// in front of a command is like its option --help.
std::function<int()> parse(const Command& program, int argc, char** argv);

}  // namespace quilp
