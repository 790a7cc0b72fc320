#include "process/run.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "process/descendants.h"
#include "process/leftovers.h"
#include "readable.h"

namespace quilp {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kInput = "Nothing on standard input is meant for an add-on.\n";
constexpr std::size_t kOutputKept = 400;
constexpr auto kLongestDocument = static_cast<off_t>(libquilp::kReadLimit);
constexpr int kTick = 1;  // ms
constexpr int kMostPieces = 64;

constexpr std::array<int, 3> kEndingSignals = {SIGHUP, SIGINT, SIGTERM};
volatile std::sig_atomic_t endingSignal = 0;

/// While an add-on runs, a signal ends it first and removes its files.
class SignalWatch {
 public:
  SignalWatch() {
    struct sigaction action = {};
    action.sa_handler = [](int signal) { endingSignal = signal; };
    for (std::size_t i = 0; i < kEndingSignals.size(); ++i) {
      sigaction(kEndingSignals[i], &action, &before_[i]);
    }
  }
  ~SignalWatch() {
    for (std::size_t i = 0; i < kEndingSignals.size(); ++i) {
      sigaction(kEndingSignals[i], &before_[i], nullptr);
    }
  }
  SignalWatch(const SignalWatch&) = delete;
  SignalWatch& operator=(const SignalWatch&) = delete;

 private:
  std::array<struct sigaction, kEndingSignals.size()> before_ = {};
};

class Pipe {
 public:
  Pipe() {
    if (pipe2(ends_.data(), O_CLOEXEC) != 0) {
      throw std::system_error(errno, std::generic_category(), "cannot make a pipe");
    }
  }
  ~Pipe() {
    closeEnd(0);
    closeEnd(1);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reading() const { return ends_[0]; }
  int writing() const { return ends_[1]; }
  void closeReading() { closeEnd(0); }
  void closeWriting() { closeEnd(1); }

 private:
  void closeEnd(std::size_t i) {
    if (ends_[i] >= 0) {
      close(ends_[i]);
      ends_[i] = -1;
    }
  }

  std::array<int, 2> ends_ = {-1, -1};
};

/// One run, from the start of the add-on to the end of all its processes.
class Watch {
 public:
  Watch(const std::vector<std::string>& command, const libquilp::Variables& variables,
        const std::string& folder, Run& run)
      : run_(run), environment_(variables) {
    // The input stays open; how much is left in it shows whether the add-on read it.
    if (write(input_.writing(), kInput.data(), kInput.size()) < 0) {
      throw std::system_error(errno, std::generic_category(), "cannot write to a pipe");
    }
    start(command, folder);
  }

  ~Watch() {
    kill(-child_, SIGKILL);
    endDescendants();
  }

  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  void wait(Clock::time_point end, const char* document) {
    int status = 0;
    while (waitpid(child_, &status, WNOHANG) == 0) {
      if (endingSignal != 0) {
        throw Interrupted{endingSignal};
      }
      struct stat file = {};
      run_.tooLong = stat(document, &file) == 0 && file.st_size > kLongestDocument;
      run_.timedOut = Clock::now() >= end;
      if (run_.tooLong || run_.timedOut) {
        return;
      }
      lookAtInput();
      takeOutput(kTick);
    }
    lookAtInput();
    takeOutput(0);
    run_.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    run_.status = run_.signal != 0 ? 1 : WEXITSTATUS(status);
    run_.processes = lingeringDescendants();
  }

 private:
  void start(const std::vector<std::string>& command, const std::string& folder) {
    std::vector<char*> argv;
    argv.reserve(command.size() + 1);
    for (const std::string& argument : command) {
      argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    Pipe errors;
    child_ = fork();
    if (child_ < 0) {
      throw std::system_error(errno, std::generic_category(), "cannot start a process");
    }
    if (child_ == 0) {
      setpgid(0, 0);
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      dup2(input_.reading(), STDIN_FILENO);
      dup2(output_.writing(), STDOUT_FILENO);
      dup2(output_.writing(), STDERR_FILENO);
      if (chdir(folder.c_str()) == 0) {
        execvpe(argv[0], argv.data(), environment_.data());
      }
      const int error = errno;
      _exit(write(errors.writing(), &error, sizeof error) < 0 ? 1 : 0);
    }
    setpgid(child_, child_);
    errors.closeWriting();
    output_.closeWriting();
    fcntl(output_.reading(), F_SETFL, O_NONBLOCK);
    if (read(errors.reading(), &run_.startError, sizeof run_.startError) <= 0) {
      run_.startError = 0;
    }
  }

  void lookAtInput() {
    int left = 0;
    if (!run_.readInput && ioctl(input_.reading(), FIONREAD, &left) == 0 &&
        static_cast<std::size_t>(left) < kInput.size()) {
      run_.readInput = true;
      input_.closeWriting();  // at the end of its input, the add-on goes on
      input_.closeReading();
    }
  }

  void takeOutput(int milliseconds) {
    pollfd wanted = {output_.reading(), POLLIN, 0};
    poll(&wanted, 1, milliseconds);
    char piece[4096];
    // An add-on that never stops writing must still meet the time limit.
    for (int i = 0; output_.reading() >= 0 && i < kMostPieces; ++i) {
      const ssize_t size = read(output_.reading(), piece, sizeof piece);
      if (size < 0) {
        return;
      }
      if (size == 0) {
        output_.closeReading();
        return;
      }
      const std::size_t room = kOutputKept - run_.output.size();
      run_.output.append(piece, std::min(room, static_cast<std::size_t>(size)));
    }
  }

  Run& run_;
  libquilp::Environment environment_;
  Pipe input_;
  Pipe output_;
  pid_t child_ = -1;
};

}  // namespace

Runner::Runner(std::string program, std::chrono::milliseconds limit)
    : program_(std::move(program)), limit_(limit), folder_("/tmp/quilp-check.XXXXXX") {
  if (mkdtemp(folder_.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "cannot make a folder in /tmp");
  }
  adoptDescendants();
}

Runner::~Runner() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

Run Runner::run(const std::vector<std::string>& arguments, const libquilp::Variables& variables) {
  auto file = std::make_shared<libquilp::CTmpFile>();
  file->choose();
  Run run = runInto(arguments, file->name(), variables);
  run.file = file;
  return run;
}

Run Runner::runUnwritable(const std::vector<std::string>& arguments) {
  return runInto(arguments, folder_ + "/no such folder/document", {});
}

Run Runner::runInto(const std::vector<std::string>& arguments, const std::string& file,
                    const libquilp::Variables& variables) {
  std::vector<std::string> command = {program_};
  command.insert(command.end(), arguments.begin(), arguments.end());
  command.insert(command.end(), {"-o", file});

  Run run;
  const SignalWatch signals;
  const Leftovers leftovers(folder_, file);
  {
    Watch watch(command, variables, folder_, run);
    watch.wait(Clock::now() + limit_, file.c_str());
  }
  run.leftovers = leftovers.collect();
  return run;
}

}  // namespace quilp
