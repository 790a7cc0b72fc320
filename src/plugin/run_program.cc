#include "plugin/run_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "plugin/guarded_run.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

constexpr char kSystemShell[] = "/bin/sh";

bool isProgram(const char* path) {
  struct stat status = {};
  return stat(path, &status) == 0 && S_ISREG(status.st_mode) &&
         faccessat(AT_FDCWD, path, X_OK, AT_EACCESS) == 0;
}

/// Calls attempt(path) for each program that execvp would try, until one call returns true.
template <class Attempt>
bool anyProgram(const char* name, Attempt attempt) {
  if (std::strchr(name, '/') != nullptr) {
    return isProgram(name) && attempt(name);
  }
  if (*name == '\0') {
    return false;
  }
  const char* path = std::getenv("PATH");
  Cutter folders(path != nullptr ? path : "/bin:/usr/bin");
  for (;;) {
    const Cut folder = folders.upTo(":");
    std::string program(folder.value_or(folders.rest()));
    program += program.empty() ? "" : "/";
    program += name;
    if (isProgram(program.c_str()) && attempt(program.c_str())) {
      return true;
    }
    if (!folder) {
      return false;
    }
  }
}

/// Sends standard output and standard error to /dev/null; inherits them if it cannot be opened.
class Redirection {
 public:
  Redirection() : null_(open("/dev/null", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)) {
    posix_spawn_file_actions_init(&actions_);
    if (null_ >= 0) {
      posix_spawn_file_actions_adddup2(&actions_, null_, STDOUT_FILENO);
      posix_spawn_file_actions_adddup2(&actions_, null_, STDERR_FILENO);
    }
  }
  ~Redirection() {
    posix_spawn_file_actions_destroy(&actions_);
    if (null_ >= 0) {
      close(null_);
    }
  }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

  const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  int null_;
  posix_spawn_file_actions_t actions_;
};

/// Starts the program, or the system's shell with a script that has no interpreter line. Returns 0
/// or an errno value.
int start(pid_t& child, const char* path, char** argv, char** environment,
          const Redirection& redirection) {
  const int error = posix_spawn(&child, path, redirection.actions(), nullptr, argv, environment);
  if (error != ENOEXEC) {
    return error;
  }
  std::vector<char*> script = {const_cast<char*>(kSystemShell), const_cast<char*>(path)};
  do {
    script.push_back(*++argv);
  } while (*argv != nullptr);
  return posix_spawn(&child, kSystemShell, redirection.actions(), nullptr, script.data(),
                     environment);
}

/// ENOENT, or EACCES for a file that is there.
int errorOfNone(const char* name) {
  const bool isPath = std::strchr(name, '/') != nullptr;
  return isPath && access(name, F_OK) == 0 ? EACCES : ENOENT;
}

ProgramEnd runUnderControl(char** argv, char** environment, Control& control) {
  GuardedProgram program{{}, argv, environment};
  anyProgram(argv[0], [&program](const char* path) {
    program.paths.emplace_back(path);
    return false;
  });
  if (program.paths.empty()) {
    ProgramEnd end;
    end.error = errorOfNone(argv[0]);
    return end;
  }
  return runGuarded(program, control);
}

}  // namespace

ProgramEnd runProgram(char** argv, char** environment, Control* control) {
  if (control != nullptr) {
    return runUnderControl(argv, environment, *control);
  }
  ProgramEnd end;
  end.error = errorOfNone(argv[0]);
  pid_t child = -1;
  const Redirection redirection;
  anyProgram(argv[0], [&](const char* path) {
    end.error = start(child, path, argv, environment, redirection);
    return !triesNextProgram(end.error);
  });
  if (!end.started()) {
    return end;  // without a pid, waiting could collect a child of the host
  }
  // After an interrupted wait, still collect the child.
  while (waitpid(child, &end.waitStatus, 0) < 0 && errno == EINTR) {
    end.interrupted = true;
  }
  return end;
}

bool canBeExecuted(const char* program) {
  return anyProgram(program, [](const char*) { return true; });
}

}  // namespace libquilp
