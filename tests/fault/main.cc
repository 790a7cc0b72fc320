#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "cases.h"
#include "fault.h"
#include "lookups.h"
#include "support.h"

// Makes each call that an exported function makes of malloc, fopen, posix_spawn and so on fail, one
// after the other, and looks at what the function gives then and at what it leaves behind.

namespace {

const char* const kFamilyNames[kFamilies] = {"memory", "open", "spawn", "popen", "system",
                                             "thread", "read", "name",  "guard"};

/// One route of a case, in a process of its own.
class Run {
 public:
  Run(const FaultCase& each, const char* route)
      : name_(each.functions + ' ' + route), case_(each), report_(dup(STDOUT_FILENO)) {}
  ~Run() { close(report_); }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  /// Whether nothing was found.
  bool run() {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
      redirect();
      tryAll();
      _exit(findings_ != 0 ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) {
      dprintf(report_, "FINDING: %s: died by signal %d\n", name_.c_str(), WTERMSIG(status));
    }
    return status == 0;
  }

 private:
  static void redirect() {
    dup2(open("/run/box/printed", O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), STDOUT_FILENO);
    if (std::getenv("QUILP_FAULT_TRACE") == nullptr) {
      dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    }
  }

  void tryAll() {
    case_.call();
    const int usual = case_.call();
    for (family_ = 0; family_ < kFamilies; ++family_) {
      for (const bool lasting : {false, true}) {
        nth_ = 1;
        while ((!lasting || family_ == kMemory) && tryOne(usual, lasting)) {
          ++nth_;
        }
      }
    }
    dprintf(report_, "%-36s %6ld %6ld\n", name_.c_str(), failed_, spared_);
  }

  /// False when there was no call left to fail.
  bool tryOne(int usual, bool lasting) {
    const auto before = test::Holdings::now();
    const long balance = faultBalance();
    faultArm(family_, lasting, nth_);
    const int result = case_.call();
    const FaultCount count = faultDisarm();
    const long leaked = faultBalance() - balance;
    const auto after = test::Holdings::after(before);

    const std::vector<int>& failures = case_.failures;
    if (result != usual && (std::count(failures.begin(), failures.end(), result) == 0 ||
                            (result == test::kOutOfMemory && family_ != kMemory))) {
      find("gave " + std::to_string(result) + " instead of " + std::to_string(usual));
    }
    if (leaked != 0) {
      find("leaked " + std::to_string(leaked) + " blocks");
    }
    if (!(after == before)) {
      std::ostringstream text;
      text << "left " << after << " after " << before;
      find(text.str());
    }
    failed_ += count.failed != 0 ? 1 : 0;
    spared_ += count.failed == 0 && count.spared != 0 ? 1 : 0;
    return count.failed != 0 || count.spared != 0;
  }

  void find(const std::string& what) {
    ++findings_;
    dprintf(report_, "FINDING: %s %s %ld: %s\n", name_.c_str(), kFamilyNames[family_], nth_,
            what.c_str());
  }

  const std::string name_;
  const FaultCase& case_;
  int report_;
  int family_ = 0;
  long nth_ = 1;
  long findings_ = 0;
  long failed_ = 0;
  long spared_ = 0;
};

/// Every exported function is in a case; the tables are no functions.
long countMissing(const std::vector<FaultCase>& cases, const std::string& exports) {
  std::string known =
      " gSearchKey g_CountryCode g_GenderCode g_LanguageCode g_VocalTrackCode html_utf8 "
      "s_SeparateStr year_en ";
  for (const FaultCase& each : cases) {
    known += each.functions + " ";
  }
  long missing = 0;
  std::istringstream list(test::readFile(exports));
  for (std::string name; std::getline(list, name);) {
    if (known.find(" " + name + " ") == std::string::npos) {
      std::printf("FINDING: %s: no case\n", name.c_str());
      ++missing;
    }
  }
  return missing;
}

void chooseRoute(const FaultCase& each, const std::string& route) {
  test::writeFile("/etc/config/catalox.conf", "[addon]\nLANG=de\n");
  test::writeFile("/etc/config/zorp.conf",
                  "[addon]\nClass=Kestrawind\nType=" + each.type +
                      "\nEnable=" + (route == "add-on" ? "TRUE" : "FALSE") +
                      "\nShell=" QUILP_TESTS "/addon.sh\n");
}

/// glibc keeps the stacks of threads that have ended: they are made here.
void warmThreads() {
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([] { usleep(20000); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (faultArm == nullptr) {
    std::fprintf(stderr, "usage: LD_PRELOAD=libfault.so %s [FUNCTIONS [ROUTE]]\n", argv[0]);
    return 2;
  }
  const std::regex functions(argc > 1 ? argv[1] : "");
  const std::string onlyRoute = argc > 2 ? argv[2] : "";
  const std::vector<FaultCase> cases = faultCases();
  bool right = countMissing(cases, QUILP_TESTS "/exports.txt") == 0;
  std::remove("/sbin/curl");
  if (symlink(QUILP_TESTS "/fault/client.sh", "/sbin/curl") != 0) {
    return 2;
  }
  warmThreads();
  std::printf("%-36s %6s %6s\n", "function and route", "failed", "spared");
  for (const FaultCase& each : cases) {
    for (const std::string route : {"add-on", "built-in"}) {
      if ((!each.type.empty() || route == "built-in") &&
          (onlyRoute.empty() || onlyRoute == route) &&
          std::regex_search(each.functions, functions)) {
        chooseRoute(each, route);
        right = Run(each, route.c_str()).run() && right;
      }
    }
  }
  return right ? 0 : 1;
}
