#pragma once

#include <string>
#include <vector>

#include "plugin/control.h"
#include "plugin/run_program.h"

namespace libquilp {

/// A program to run under a guard.
struct GuardedProgram {
  std::vector<std::string> paths;  // the first one that can be started is run
  char** argv;
  char** environment;
  int output = -1;             // standard output; -1 for /dev/null
  std::vector<int> kept = {};  // other descriptors that the program inherits
};

/// Runs a program by a guard: a process between the host and the program, which waits for it and
/// ends it with its whole process group when the control says so, or when the host ends. What the
/// host does with its children, with SIGCHLD, or with its standard streams, changes nothing. The
/// guard keeps no descriptor of the host's.
ProgramEnd runGuarded(const GuardedProgram& program, Control& control);

/// Runs a command of the system's shell under a guard, its standard output to a descriptor.
ProgramEnd runGuardedCommand(const std::string& command, Control& control, int output,
                             std::vector<int> kept = {});

}  // namespace libquilp
