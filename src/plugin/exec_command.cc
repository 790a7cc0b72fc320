#include "plugin/exec_command.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace libquilp {

int ExecCommand(char** argv) {
  int status = 0;
  const pid_t child = fork();
  if (child == 0) {
    const int null = open("/dev/null", O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(null, STDOUT_FILENO);
    dup2(null, STDERR_FILENO);
    if (null > STDERR_FILENO) {
      close(null);
    }
    execvp(argv[0], argv);
  }
  if (child < 0) {
    return status;  // a wait would collect a child of the host
  }
  if (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    // The interrupted wait's status counts, but the child is not left behind.
    int ignored = 0;
    while (waitpid(child, &ignored, 0) < 0 && errno == EINTR) {
    }
  }
  return WIFSIGNALED(status) ? 1 : WEXITSTATUS(status);
}

}  // namespace libquilp
