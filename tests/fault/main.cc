#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>
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

const char* const kFamilyNames[kFamilies] = {"memory", "open",   "spawn", "popen",
                                             "system", "thread", "read",  "name"};

/// How far a case has come. Child processes write it: the next one goes on where one has died.
struct Progress {
  int family;
  bool lasting;  // memory alone
  long nth;
  bool trying;
  long findings;
  long failed;
  long spared;
};

std::string kindOf(const Progress& at) {
  return std::string(kFamilyNames[at.family]) + (at.lasting ? "+" : "");
}

/// One route of a case.
class Run {
 public:
  Run(const FaultCase& each, const char* route, Progress& at)
      : case_(each), route_(route), at_(at), report_(dup(STDOUT_FILENO)) {}
  ~Run() { close(report_); }
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  void run() {
    for (at_ = Progress{0, false, 1, false, 0, 0, 0}; at_.family < kFamilies;) {
      std::fflush(stdout);
      const pid_t child = fork();
      if (child == 0) {
        redirect();
        tryAll();
        _exit(0);
      }
      int status = 0;
      waitpid(child, &status, 0);
      if (status != 0) {
        find(" died: wait status " + std::to_string(status));
        at_.family = at_.trying ? at_.family : kFamilies;
        ++at_.nth;
      }
    }
    dprintf(report_, "%-28s %-9s %6ld %6ld\n", case_.functions.c_str(), route_, at_.failed,
            at_.spared);
  }

 private:
  static void redirect() {
    dup2(open("/run/box/printed", O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), STDOUT_FILENO);
    if (std::getenv("QUILP_FAULT_TRACE") == nullptr) {
      dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    }
  }

  void tryAll() {
    at_.trying = false;
    case_.call();
    const int usual = case_.call();
    at_.trying = true;
    while (at_.family < kFamilies) {
      if (tryOne(usual)) {
        ++at_.nth;
        continue;
      }
      at_.lasting = at_.family == kMemory && !at_.lasting;
      at_.family += at_.lasting ? 0 : 1;
      at_.nth = 1;
    }
  }

  /// False when there was no call left to fail.
  bool tryOne(int usual) {
    const auto before = test::Holdings::now();
    const long balance = faultBalance();
    faultArm(at_.family, at_.lasting, at_.nth);
    const int result = case_.call();
    const FaultCount count = faultDisarm();
    const long leaked = faultBalance() - balance;
    const auto after = test::Holdings::after(before);

    const std::vector<int>& failures = case_.failures;
    if (result != usual && (std::count(failures.begin(), failures.end(), result) == 0 ||
                            (result == test::kOutOfMemory && at_.family != kMemory))) {
      find(" gave " + std::to_string(result) + " instead of " + std::to_string(usual));
    }
    if (leaked != 0) {
      find(" leaked " + std::to_string(leaked) + " blocks");
    }
    if (!(after == before)) {
      std::ostringstream text;
      text << " left " << after << " after " << before;
      find(text.str());
    }
    if (count.failed == 0 && count.spared == 0) {
      return false;
    }
    at_.failed += count.failed != 0 ? 1 : 0;
    at_.spared += count.failed == 0 ? 1 : 0;
    return true;
  }

  void find(const std::string& what) {
    ++at_.findings;
    dprintf(report_, "FINDING: %s %s %s %ld:%s\n", case_.functions.c_str(), route_,
            kindOf(at_).c_str(), at_.nth, what.c_str());
  }

  const FaultCase& case_;
  const char* route_;
  Progress& at_;
  int report_;
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
  long findings = countMissing(cases, QUILP_TESTS "/exports.txt");
  long failed = 0;
  std::remove("/sbin/curl");
  if (symlink(QUILP_TESTS "/fault/client.sh", "/sbin/curl") != 0) {
    return 2;
  }
  warmThreads();
  auto& progress = *static_cast<Progress*>(
      mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  std::printf("%-28s %-9s %6s %6s\n", "function", "route", "failed", "spared");
  for (const FaultCase& each : cases) {
    for (const char* route : {"add-on", "built-in"}) {
      if ((each.type.empty() && std::string(route) == "add-on") ||
          (!onlyRoute.empty() && onlyRoute != route) ||
          !std::regex_search(each.functions, functions)) {
        continue;
      }
      chooseRoute(each, route);
      Run(each, route, progress).run();
      findings += progress.findings;
      failed += progress.failed;
    }
  }
  std::printf("%ld calls failed, %ld findings\n", failed, findings);
  return findings == 0 && failed > 0 ? 0 : 1;
}
