#pragma once

#include <string>
#include <vector>

#include "usage/command.h"

namespace quilp {

/// Runs the program with these words.
using RunWords = int (*)(const std::vector<std::string>& words);

/// "--record FILE COMMAND..." or "--replay FILE".
bool isRecordedRun(const std::vector<std::string>& words);
int runRecorded(const std::vector<std::string>& words, RunWords run);

/// For the help.
void addRecordOptions(Command& program);

void addDriftCommand(Command& program, RunWords run);

}  // namespace quilp
