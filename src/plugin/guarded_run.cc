#include "plugin/guarded_run.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "plugin/descriptor.h"

namespace libquilp {
namespace {

constexpr char kSystemShell[] = "/bin/sh";
constexpr std::size_t kStackSize = 256UL * 1024;
constexpr int kStep = 5;         // milliseconds between looks at a program whose end tells nothing
constexpr int kCollecting = 20;  // milliseconds for what was killed to end

/// What the guard is told, and what it tells. Lies in memory that both share, however the system
/// starts a guard.
struct Orders {
  const GuardedProgram* program;
  Control* control;
  pid_t host;
  void* stack;    // the end of the guard's
  sigset_t mask;  // of the calling thread
  ProgramEnd end;
  bool cut;
};

/// Memory that a child shares.
class SharedMemory {
 public:
  explicit SharedMemory(std::size_t size)
      : size_(size),
        start_(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {}
  ~SharedMemory() {
    if (*this) {
      munmap(start_, size_);
    }
  }
  SharedMemory(const SharedMemory&) = delete;
  SharedMemory& operator=(const SharedMemory&) = delete;

  explicit operator bool() const { return start_ != MAP_FAILED; }
  void* start() const { return start_; }
  void* end() const { return static_cast<char*>(start_) + size_; }

 private:
  std::size_t size_;
  void* start_;
};

int spawn(const Orders& orders, const char* path, char** argv, pid_t& child) {
  const GuardedProgram& program = *orders.program;
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  posix_spawn_file_actions_init(&actions);
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
  posix_spawnattr_setsigmask(&attributes, &orders.mask);
  const int null = aboveStandard(open("/dev/null", O_RDWR | O_CLOEXEC));
  const int output = program.output >= 0 ? program.output : null;
  posix_spawn_file_actions_adddup2(&actions, null, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, null, STDERR_FILENO);
  for (const int kept : program.kept) {
    posix_spawn_file_actions_adddup2(&actions, kept, kept);  // clears FD_CLOEXEC
  }
  const int error = posix_spawn(&child, path, &actions, &attributes, argv, program.environment);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  close(null);
  return error;
}

/// Starts the first program that can be, or the system's shell with a script that has no
/// interpreter line.
int start(const Orders& orders, pid_t& child) {
  const GuardedProgram& program = *orders.program;
  int error = ENOENT;
  for (const std::string& path : program.paths) {
    error = spawn(orders, path.c_str(), program.argv, child);
    if (error == ENOEXEC) {
      std::vector<char*> script = {const_cast<char*>(kSystemShell),
                                   const_cast<char*>(path.c_str())};
      char** argument = program.argv;
      do {
        script.push_back(*++argument);
      } while (*argument != nullptr);
      error = spawn(orders, kSystemShell, script.data(), child);
    }
    if (!triesNextProgram(error)) {
      return error;
    }
  }
  return error;
}

void drain(int signals) {
  signalfd_siginfo info;
  while (read(signals, &info, sizeof info) > 0) {
  }
}

/// Whether the host has ended, however it did.
bool isHostOver(const Orders& orders) { return getppid() != orders.host; }

/// Closes what the guard does not need: who waits for the end of a pipe of the host must not wait
/// for the guard.
void closeOthers(const Orders& orders) {
  const GuardedProgram& program = *orders.program;
  constexpr unsigned kNone = ~0U;  // -1
  for (unsigned next = 0;;) {
    unsigned kept = kNone;  // the next one to keep
    const auto keep = [next, &kept](int descriptor) {
      const auto number = static_cast<unsigned>(descriptor);
      kept = number >= next && number < kept ? number : kept;
    };
    keep(program.output);
    keep(orders.control->descriptor());
    for (const int descriptor : program.kept) {
      keep(descriptor);
    }
    if (kept > next) {
      close_range(next, kept - 1, 0);
    }
    if (kept == kNone) {
      return;
    }
    next = kept + 1;
  }
}

/// Kills the program's group and collects what belonged to it: a grandchild whose parent has ended
/// is the guard's child.
void endAll(pid_t child, int signals, int& waitStatus) {
  kill(-child, SIGKILL);
  while (waitpid(child, &waitStatus, 0) < 0 && errno == EINTR) {
  }
  pollfd ended = {signals, POLLIN, 0};
  for (int left = kCollecting; left > 0; --left) {
    const pid_t collected = waitpid(-1, nullptr, WNOHANG);
    if (collected < 0) {
      return;
    }
    if (collected == 0) {
      poll(&ended, 1, 1);
      drain(signals);
    }
  }
}

/// The guard. All signals are blocked: a handler of the host must not run in it.
int guard(void* argument) {
  Orders& orders = *static_cast<Orders*>(argument);
  struct sigaction usual = {};
  usual.sa_handler = SIG_DFL;
  sigaction(SIGCHLD, &usual, nullptr);
  // Who kills the host's group must not kill the guard, which ends the program.
  setpgid(0, 0);
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  closeOthers(orders);
  sigset_t wanted;
  sigemptyset(&wanted);
  sigaddset(&wanted, SIGCHLD);
  const int signals = aboveStandard(signalfd(-1, &wanted, SFD_CLOEXEC | SFD_NONBLOCK));
  prctl(PR_SET_PDEATHSIG, SIGCHLD);  // the host's end wakes the guard
  if (isHostOver(orders)) {
    return 0;
  }
  pid_t child = -1;
  orders.end.error = start(orders, child);
  if (orders.end.error != 0) {
    return 0;
  }
  pollfd events[] = {{signals, POLLIN, 0}, {orders.control->descriptor(), POLLIN, 0}};
  while (waitpid(child, &orders.end.waitStatus, WNOHANG) == 0) {
    if (isHostOver(orders) || orders.control->isOver() || (events[1].revents & POLLIN) != 0) {
      orders.cut = true;
      endAll(child, signals, orders.end.waitStatus);
      break;
    }
    const int left = orders.control->millisecondsLeft();
    poll(events, 2, signals < 0 && (left < 0 || left > kStep) ? kStep : left);
    drain(signals);
  }
  return 0;
}

/// Suspends the calling thread until the guard ends.
pid_t startGuard(Orders& orders) {
#ifdef __SANITIZE_THREAD__  // it knows no process that shares memory
  const pid_t pid = fork();
  if (pid == 0) {
    _exit(guard(&orders));
  }
  return pid;
#else
  // Without a signal at its end, and so no child that the host could collect by chance.
  return clone(&guard, orders.stack, CLONE_VM | CLONE_VFORK, &orders);
#endif
}

/// Starts the guard and collects it. All signals are blocked.
void* runGuard(void* argument) {
  Orders& orders = *static_cast<Orders*>(argument);
  const pid_t pid = startGuard(orders);
  if (pid < 0) {
    orders.end.error = errno;
  }
  while (pid > 0 && waitpid(pid, nullptr, __WALL) < 0 && errno == EINTR) {
  }
  return nullptr;
}

/// Runs the guard from a thread of its own, so that the calling thread still handles signals of the
/// host; without a thread, from the calling one.
void runApart(Orders& orders) {
  sigset_t all;
  sigfillset(&all);
  int cancelState = 0;
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelState);
  pthread_sigmask(SIG_BLOCK, &all, &orders.mask);
  pthread_t thread;
  const bool apart = pthread_create(&thread, nullptr, &runGuard, &orders) == 0;
  if (!apart) {
    runGuard(&orders);
  }
  pthread_sigmask(SIG_SETMASK, &orders.mask, nullptr);
  if (apart) {
    pthread_join(thread, nullptr);  // goes on after a handler
  }
  pthread_setcancelstate(cancelState, nullptr);
}

}  // namespace

ProgramEnd runGuarded(const GuardedProgram& program, Control& control) {
  ProgramEnd failed;
  if (control.isOver()) {
    control.noteCut();
    failed.error = ECANCELED;
    return failed;
  }
  const SharedMemory shared(sizeof(Orders));
  const SharedMemory stack(kStackSize);
  if (!shared || !stack) {
    failed.error = ENOMEM;
    return failed;
  }
  auto* orders =
      new (shared.start()) Orders{&program, &control, getpid(), stack.end(), {}, {}, false};
  orders->end.error = EAGAIN;  // unless the guard tells otherwise
  runApart(*orders);
  if (orders->cut) {
    control.noteCut();
  }
  return orders->end;
}

ProgramEnd runGuardedCommand(const std::string& command, Control& control, int output,
                             std::vector<int> kept) {
  std::string words[] = {"sh", "-c", command};
  char* argv[] = {words[0].data(), words[1].data(), words[2].data(), nullptr};
  return runGuarded({{kSystemShell}, argv, environ, output, std::move(kept)}, control);
}

}  // namespace libquilp
