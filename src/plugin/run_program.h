#pragma once

#include <sys/wait.h>

#include <cerrno>

namespace libquilp {

/// How a program ended.
struct ProgramEnd {
  int error = 0;             // errno if it could not be started
  int waitStatus = 0;        // from waitpid
  bool interrupted = false;  // a signal of the host interrupted the wait

  bool started() const { return error == 0; }
  int signal() const { return WIFSIGNALED(waitStatus) ? WTERMSIG(waitStatus) : 0; }
  int exitStatus() const { return WIFSIGNALED(waitStatus) ? 1 : WEXITSTATUS(waitStatus); }

  /// The status for callers of the library: 0 also if the program was not started or the wait was
  /// interrupted.
  int reported() const { return interrupted ? 0 : exitStatus(); }
};

class Control;

/// Runs argv[0], found like execvp does, in the given environment and with its output to /dev/null.
/// Waits without a time limit, unless there is a control.
ProgramEnd runProgram(char** argv, char** environment, Control* control);

/// Errors after which execvp tries the next folder of PATH.
inline bool triesNextProgram(int error) {
  return error == EACCES || error == ENOENT || error == ENOTDIR || error == ENODEV ||
         error == ESTALE || error == ETIMEDOUT;
}

/// Whether execvp would find the program, directly or along PATH.
bool canBeExecuted(const char* program);

}  // namespace libquilp
