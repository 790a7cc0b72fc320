#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "cases.h"
#include "fault.h"
#include "support.h"

// Makes each call that an exported function makes of malloc, fopen, fork and so on fail, one after
// the other, and looks at what the function gives then and what it leaves behind.

namespace {

const char* const kFamilyNames[kFaultFamilies] = {"memory", "open",   "fork", "popen",
                                                  "system", "thread", "read", "name"};

/// One way of failing: the n-th call of a family, or all from there on.
struct Fault {
  int family = 0;
  bool lasting = false;
  long nth = 1;

  /// To the family's other way, or to the next family.
  void nextKind() {
    const bool toLasting = family == kMemoryFault && !lasting;
    family += toLasting ? 0 : 1;
    lasting = toLasting;
    nth = 1;
  }
  std::string kind() const { return std::string(kFamilyNames[family]) + (lasting ? "+" : ""); }
};

struct Tally {
  long failed = 0;
  long spared = 0;
  long lost = 0;
  std::map<std::string, long> outcomes;
};

std::string outcomeOf(int result) {
  return result == kOutOfMemory ? "bad_alloc" : std::to_string(result);
}

int callWithout(const FaultCase& each) {
  faultWindow = {[] {}, [] {}};
  return each.call();
}

/// What the parent is told: one line for each fault, "begin" before it and "end" behind.
class Reporter {
 public:
  explicit Reporter(int pipe) : pipe_(pipe) {}
  void say(const std::string& line) const {
    const std::string whole = line + "\n";
    if (write(pipe_, whole.data(), whole.size()) < 0) {
      _exit(2);
    }
  }

 private:
  int pipe_;
};

/// Tries the faults from `fault` on.
void tryFaults(const FaultCase& each, Fault fault, const Reporter& reporter) {
  const int usual = callWithout(each);
  callWithout(each);
  for (; fault.family < kFaultFamilies; fault.nextKind()) {
    for (;; ++fault.nth) {
      reporter.say("begin");
      long failed = 0;
      faultWindow = {
          [&] { faultArm(static_cast<FaultFamily>(fault.family), fault.nth, fault.lasting); },
          [&] { failed = faultDisarm(); }};
      const auto before = test::Holdings::now();
      const long balance = faultBalance();
      const int result = each.call();
      const long leaked = faultBalance() - balance;
      const auto after = test::Holdings::after(before);
      const long spared = faultSpared();
      std::ostringstream wrong;
      const auto& failures = each.failures;
      if (result != usual &&
          std::find(failures.begin(), failures.end(), result) == failures.end()) {
        wrong << " result " << result << " instead of " << usual;
      }
      if (result == kOutOfMemory && fault.family != kMemoryFault) {
        wrong << " bad_alloc with memory left";
      }
      if (leaked != 0) {
        wrong << " leaked " << leaked << " blocks";
      }
      if (!(after == before)) {
        wrong << " holds " << after << " after " << before;
      }
      reporter.say("end " + std::to_string(failed) + " " + std::to_string(spared) + " " +
                   std::to_string(faultLost()) + " " + outcomeOf(result) + wrong.str());
      if (failed == 0 && spared == 0) {
        break;
      }
    }
  }
}

/// A case's faults, in child processes: one that dies is counted, and the next goes on behind it.
class CaseRun {
 public:
  explicit CaseRun(const FaultCase& each) : case_(each) {}

  std::map<std::string, Tally> run() {
    while (fault_.family < kFaultFamilies) {
      runChild();
    }
    return tallies_;
  }
  const std::vector<std::string>& wrong() const { return wrong_; }

 private:
  void runChild() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
      std::abort();
    }
    std::cout.flush();
    const pid_t child = fork();
    if (child == 0) {
      close(ends[0]);
      const int printed = open("/run/box/printed", O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
      const int messages =
          open("/run/box/messages", O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
      dup2(printed, STDOUT_FILENO);
      if (std::getenv("QUILP_FAULT_TRACE") == nullptr) {
        dup2(messages, STDERR_FILENO);
      }
      tryFaults(case_, fault_, Reporter(ends[1]));
      _exit(0);
    }
    close(ends[1]);
    const bool begun = readReports(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (status == 0) {
      return;
    }
    std::ostringstream text;
    text << "died: " << (WIFSIGNALED(status) ? "signal " : "status ")
         << (WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status));
    note(text.str());
    ++tallies_[fault_.kind()].outcomes["died"];
    if (begun) {
      ++fault_.nth;
    } else {
      fault_.family = kFaultFamilies;
    }
  }

  /// True when the child was about to try fault_.
  bool readReports(int pipe) {
    std::FILE* const reports = fdopen(pipe, "r");
    char line[512];
    bool begun = false;
    while (std::fgets(line, sizeof line, reports) != nullptr) {
      std::istringstream words(line);
      std::string verb;
      words >> verb;
      begun = verb == "begin";
      if (!begun) {
        readEnd(words);
      }
    }
    std::fclose(reports);
    return begun;
  }

  void readEnd(std::istringstream& words) {
    long failed = 0;
    long spared = 0;
    long lost = 0;
    std::string outcome;
    std::string wrong;
    words >> failed >> spared >> lost >> outcome;
    std::getline(words, wrong);
    if (!wrong.empty()) {
      note(wrong);
    }
    if (failed == 0 && spared == 0) {
      fault_.nextKind();
      return;
    }
    Tally& tally = tallies_[fault_.kind()];
    tally.failed += failed != 0 ? 1 : 0;
    tally.spared += spared;
    tally.lost += lost;
    ++tally.outcomes[outcome];
    ++fault_.nth;
  }

  void note(const std::string& text) {
    wrong_.push_back(case_.function + " " + case_.route + " " + fault_.kind() + " " +
                     std::to_string(fault_.nth) + ": " + text);
  }

  const FaultCase& case_;
  Fault fault_;
  std::map<std::string, Tally> tallies_;
  std::vector<std::string> wrong_;
};

void printRow(const FaultCase& each, const std::string& kind, const Tally& tally) {
  std::printf("%-28s %-9s %-8s %6ld %6ld %5ld  ", each.function.c_str(), each.route.c_str(),
              kind.c_str(), tally.failed, tally.spared, tally.lost);
  for (const auto& [outcome, times] : tally.outcomes) {
    std::printf(" %s:%ld", outcome.c_str(), times);
  }
  std::printf("\n");
}

/// Every exported function has its cases; the tables are no functions.
std::vector<std::string> functionsWithoutCase(const std::vector<FaultCase>& cases,
                                              const char* exports) {
  std::set<std::string> known = {"gSearchKey", "g_CountryCode",    "g_GenderCode", "g_LanguageCode",
                                 "html_utf8",  "g_VocalTrackCode", "year_en",      "s_SeparateStr"};
  for (const FaultCase& each : cases) {
    known.insert(each.function);
  }
  std::vector<std::string> missing;
  std::ifstream list(exports);
  for (std::string name; std::getline(list, name);) {
    if (known.count(name) == 0) {
      missing.push_back(name + ": no case");
    }
  }
  return missing;
}

/// glibc keeps the stacks of threads that have ended; they are made here.
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
  if (faultArm == nullptr || argc < 3) {
    std::fprintf(stderr, "usage: LD_PRELOAD=libfault.so %s EXPORTS FOLDER [FUNCTION [ROUTE]]\n",
                 argv[0]);
    return 2;
  }
  std::vector<FaultCase> cases = faultCases();
  std::vector<std::string> wrong = functionsWithoutCase(cases, argv[1]);
  prepareRoutes(argv[2]);
  warmThreads();
  const auto asked = [&](const FaultCase& each) {
    return (argc < 4 || each.function == argv[3]) && (argc < 5 || each.route == argv[4]);
  };
  cases.erase(std::remove_if(cases.begin(), cases.end(), std::not_fn(asked)), cases.end());
  long total = 0;
  std::printf("%-28s %-9s %-8s %6s %6s %5s   outcomes\n", "function", "route", "family", "failed",
              "spared", "lost");
  for (const FaultCase& each : cases) {
    chooseRoute(each.route);
    CaseRun run(each);
    for (const auto& [kind, tally] : run.run()) {
      printRow(each, kind, tally);
      total += tally.failed;
    }
    wrong.insert(wrong.end(), run.wrong().begin(), run.wrong().end());
  }
  std::printf("%ld calls failed, %zu findings\n", total, wrong.size());
  for (const std::string& text : wrong) {
    std::printf("%s\n", text.c_str());
  }
  return wrong.empty() ? 0 : 1;
}
