#include "fetch/curl.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include "platform.h"

namespace quilp {
namespace {

constexpr int kNotStarted = 127;
constexpr timespec kStep = {0, 200000000};

/// Does not return.
[[noreturn]] void become(std::vector<char*>& argv, const sigset_t& mask, pid_t parent) {
  // curl must not write on where the next fetch goes on, even if this program was killed.
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) {
    _exit(kNotStarted);
  }
  pthread_sigmask(SIG_SETMASK, &mask, nullptr);
  const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
  if (null >= 0) {
    dup2(null, STDIN_FILENO);
    dup2(null, STDOUT_FILENO);
  }
  execv(argv[0], argv.data());
  _exit(kNotStarted);
}

}  // namespace

Curl::Curl() {
  sigemptyset(&signals_);
  for (const int one : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) {
    sigaddset(&signals_, one);
  }
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
}

Curl::~Curl() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

int Curl::run(const std::vector<std::string>& arguments, const std::function<void()>& watch) {
  std::vector<char*> argv = {const_cast<char*>(libquilp::kHttpClient)};
  for (const std::string& argument : arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child == 0) {
    become(argv, before_, parent);
  }
  if (child < 0) {
    return kNotStarted;
  }
  int status = 0;
  for (pid_t ended = 0; ended == 0;) {
    const int signal = sigtimedwait(&signals_, nullptr, &kStep);
    if (signal > 0 && signal != SIGCHLD) {
      signal_ = signal;
      kill(child, SIGTERM);
    }
    ended = waitpid(child, &status, WNOHANG);
    watch();
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace quilp
