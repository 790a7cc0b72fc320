#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "libquilp.h"

// Compares a lookup by an add-on with the bare run of the same add-on, in turn, in a host of 10 MB
// and in one of 1000 MB: the cost must not depend on the size. The counter "over_ms" is the time
// that the library adds for the registry, the keyword, the document and the records. Run this in
// the box, which has its own registry.

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kAddOn[] = "/tmp/shell_bench.sh";

double milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

bool registerAddOn() {
  if (access("/run/box", F_OK) != 0) {
    return false;
  }
  std::ofstream(kAddOn) << "#!/bin/sh\nwhile [ \"$1\" != -o ]; do shift; done\n"
                           "echo '<movielist><movie><id><![CDATA[1]]></id><title><![CDATA[The "
                           "Paper Lighthouse]]></title></movie></movielist>' >\"$2\"\n";
  std::ofstream("/etc/config/zorp.conf")
      << "[bench]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=" << kAddOn << '\n';
  return chmod(kAddOn, 0755) == 0;
}

char* word(const char* text) { return const_cast<char*>(text); }

bool bareRun() {
  char* argv[] = {word(kAddOn), word("searchmovie"), word("-t"), word("The Paper Lighthouse"),
                  word("-n"),   word("5"),           word("-o"), word("/tmp/shell_bench.xml"),
                  nullptr};
  pid_t child = -1;
  int status = 0;
  return posix_spawn(&child, kAddOn, nullptr, nullptr, argv, environ) == 0 &&
         waitpid(child, &status, 0) == child && status == 0;
}

bool lookup() {
  velMovie_* movies = nullptr;
  int error = 0;
  const int n = velSearchMovie("The.Paper.Lighthouse.2011.1080p", 5, &movies, &error);
  velFreeMovies(movies, n);
  return n == 1 && error == 0;
}

template <class Run>
double timeOf(benchmark::State& state, Run run) {
  const auto start = Clock::now();
  if (!run()) {
    state.SkipWithError("the add-on failed");
  }
  return milliseconds(Clock::now() - start);
}

double median(std::vector<double>& times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

void shellCall(benchmark::State& state) {
  if (!registerAddOn()) {
    state.SkipWithError("run this in the box");
    return;
  }
  const std::vector<char> resident(static_cast<std::size_t>(state.range(0)) << 20U, 'x');
  benchmark::DoNotOptimize(resident.data());
  std::vector<double> bare;
  std::vector<double> call;
  std::vector<double> over;
  for (auto _ : state) {
    bare.push_back(timeOf(state, bareRun));
    call.push_back(timeOf(state, lookup));
    over.push_back(call.back() - bare.back());
  }
  state.counters["bare_ms"] = median(bare);
  state.counters["call_ms"] = median(call);
  state.counters["over_ms"] = median(over);
}
BENCHMARK(shellCall)->Arg(10)->Arg(1000)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
