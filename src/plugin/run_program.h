#pragma once

#include <sys/wait.h>

namespace libquilp {

/// How a program ended.
struct ProgramEnd {
  int error = 0;             // why it could not be started, as errno has it
  int waitStatus = 0;        // as waitpid gave it
  bool interrupted = false;  // a signal of the host interrupted the wait

  bool started() const { return error == 0; }
  int signal() const { return WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : 0; }
  int exitStatus() const { return WIFSIGNALED(waitStatus) ? 1 : WEXITSTATUS(waitStatus); }

  /// What callers of the library are told: 0 also when the program was not started or the wait was
  /// interrupted.
  int reported() const { return interrupted ? 0 : exitStatus(); }
};

/// Runs argv[0] by the rules of execvp, its output going to /dev/null, and waits for it without a
/// time limit.
ProgramEnd runProgram(char** argv);

/// Whether execvp would find the program, directly or along PATH.
bool canBeExecuted(const char* program);

}  // namespace libquilp
