#include "plugin/exec_command.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

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
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? 1 : WEXITSTATUS(status);
}

}  // namespace libquilp
