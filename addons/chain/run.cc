#include "run.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "readable.h"

namespace quilp::chain {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kTick{20};

/// A folder for documents, which is removed in the end.
class Folder {
 public:
  Folder() {
    if (mkdtemp(path_) == nullptr) {
      throw std::runtime_error(std::string("/tmp: ") + std::strerror(errno));
    }
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string file(std::size_t number) const {
    return std::string(path_) + '/' + std::to_string(number);
  }

 private:
  char path_[32] = "/tmp/quilp-chain.XXXXXX";
};

/// A process with all that it starts in its process group.
class Process {
 public:
  Process(const std::string& program, std::vector<std::string> arguments) {
    std::vector<char*> argv = {const_cast<char*>(program.c_str())};
    for (std::string& argument : arguments) {
      argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    const pid_t parent = getpid();
    child_ = fork();
    if (child_ == 0) {
      // Only what is safe after fork().
      setpgid(0, 0);
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      const int none = open("/dev/null", O_RDWR);
      dup2(none, STDIN_FILENO);
      dup2(none, STDOUT_FILENO);
      sigset_t all;
      sigemptyset(&all);
      sigprocmask(SIG_SETMASK, &all, nullptr);
      if (getppid() == parent) {
        execvp(argv[0], argv.data());
      }
      _exit(127);
    }
    if (child_ > 0) {
      setpgid(child_, child_);
    }
  }
  ~Process() {
    kill();
    if (child_ > 0 && !ended_) {
      waitpid(child_, &status_, 0);
    }
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  bool hasEnded() {
    ended_ = ended_ || child_ < 0 || waitpid(child_, &status_, WNOHANG) == child_;
    return ended_;
  }

  void kill() {
    if (child_ > 0) {
      ::kill(-child_, SIGKILL);
    }
  }

  /// Why there is no document; empty if there is one.
  std::string failure() const {
    if (child_ < 0) {
      return "cannot be started";
    }
    if (!ended_) {
      return "no answer in time";
    }
    if (WIFSIGNALED(status_)) {
      return "ended by signal " + std::to_string(WTERMSIG(status_));
    }
    const int status = WEXITSTATUS(status_);
    return status == 0     ? ""
           : status == 127 ? "cannot be started"
                           : "exit status " + std::to_string(status);
  }

 private:
  pid_t child_ = -1;
  int status_ = 0;
  bool ended_ = false;
};

/// Waits until a child ends, or until then.
void waitForChild(const sigset_t& signals, Clock::time_point end) {
  const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(end - Clock::now());
  if (left.count() > 0) {
    timespec time = {};
    time.tv_sec = static_cast<time_t>(left.count() / 1000000000);
    time.tv_nsec = static_cast<long>(left.count() % 1000000000);
    sigtimedwait(&signals, nullptr, &time);
  }
}

}  // namespace

void ask(std::vector<Question>& questions, Clock::time_point end) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGCHLD);
  std::signal(SIGCHLD, SIG_DFL);  // a caller may have it ignored
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  const Folder folder;
  std::vector<std::unique_ptr<Process>> processes;
  for (const Question& question : questions) {
    std::vector<std::string> arguments = question.arguments;
    arguments.insert(arguments.end(), {"-o", folder.file(processes.size())});
    processes.push_back(std::make_unique<Process>(question.source->program, std::move(arguments)));
  }
  const auto haveEnded = [&processes] {
    bool all = true;
    for (const std::unique_ptr<Process>& process : processes) {
      all = process->hasEnded() && all;
    }
    return all;
  };
  while (!haveEnded() && Clock::now() < end) {
    waitForChild(signals, std::min(end, Clock::now() + kTick));
    for (std::size_t i = 0; i < processes.size(); ++i) {
      std::error_code error;
      const auto size = std::filesystem::file_size(folder.file(i), error);
      if (!error && size > libquilp::kReadLimit) {
        processes[i]->kill();
      }
    }
  }
  for (std::size_t i = 0; i < questions.size(); ++i) {
    questions[i].why = processes[i]->failure();
    if (questions[i].why.empty()) {
      questions[i].answer = readDocument(folder.file(i), questions[i].root);
      questions[i].why = questions[i].answer ? "" : "no document that can be read";
    }
  }
  processes.clear();  // before their folder
}

}  // namespace quilp::chain
