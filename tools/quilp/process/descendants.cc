#include "process/descendants.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace quilp {
namespace {

constexpr int kSteps = 50;
constexpr useconds_t kStep = 10000;

struct Process {
  pid_t id;
  std::string name;
};

/// 0 for what is no number.
pid_t number(const char* text) { return static_cast<pid_t>(std::strtol(text, nullptr, 10)); }

/// From /proc/ID/stat: "ID (NAME) STATE PARENT …", where the name may hold anything.
std::vector<Process> children() {
  std::vector<Process> found;
  std::error_code error;
  for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
       entry.increment(error)) {
    const pid_t id = number(entry->path().filename().c_str());
    std::ifstream file(entry->path() / "stat");
    std::string line;
    std::getline(file, line, '\0');  // of a process that has just ended, nothing can be read
    const std::size_t open = line.find('(');
    const std::size_t close = line.rfind(')');
    if (id > 0 && open != std::string::npos && close != std::string::npos &&
        close + 4 < line.size() && number(line.c_str() + close + 4) == getpid()) {
      found.push_back({id, line.substr(open + 1, close - open - 1)});
    }
  }
  return found;
}

/// Collects what has ended; false when no child is left.
bool collectEnded() {
  pid_t ended = 0;
  do {
    ended = waitpid(-1, nullptr, WNOHANG);
  } while (ended > 0 || (ended < 0 && errno == EINTR));
  return ended == 0;
}

}  // namespace

void adoptDescendants() { prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0); }

std::vector<std::string> lingeringDescendants() {
  for (int i = 0; collectEnded(); ++i) {
    if (i == kSteps) {
      std::vector<std::string> names;
      for (const Process& child : children()) {
        names.push_back(child.name);
      }
      return names;
    }
    usleep(kStep);
  }
  return {};
}

void killChildren() {
  for (const Process& child : children()) {
    kill(child.id, SIGKILL);
  }
}

// Whoever loses its parent comes here in turn, so that every round reaches one generation more.
void endDescendants() {
  for (int i = 0; i < 10 * kSteps && collectEnded(); ++i) {
    killChildren();
    usleep(i > 0 ? kStep : kStep / 10);
  }
}

}  // namespace quilp
