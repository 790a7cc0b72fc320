#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "libquilp.h"
#include "quilp.h"

// Compares a lookup by an add-on with the bare run of the same add-on, in turn, in a host of 10 MB
// and in one of 1000 MB: the cost must not depend on the size. The counter "over_ms" is the time
// that the library adds for the registry, the keyword, the document and the records. Then it ends
// calls of an add-on that hangs, and counts how late they return. Run this in the box, which has
// its own registry.

namespace {

using Clock = std::chrono::steady_clock;

constexpr char kAddOn[] = "/tmp/shell_bench.sh";
constexpr char kHanging[] = "/tmp/hanging.sh";
constexpr std::chrono::milliseconds kLimit(20);

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
  std::ofstream(kHanging) << "#!/bin/sh\nsleep 60 & sleep 60\n";
  std::ofstream("/etc/config/zorp.conf")
      << "[bench]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=" << kAddOn
      << "\n[hanging]\nClass=Kestrawind\nType=TV\nEnable=TRUE\nShell=" << kHanging << '\n';
  return chmod(kAddOn, 0755) == 0 && chmod(kHanging, 0755) == 0;
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

quilp_reason reasonOf(quilp_request* request) {
  quilp_answer* answer = quilp_run(request);
  const quilp_reason reason = quilp_answer_reason(answer);
  quilp_answer_free(answer);
  return reason;
}

bool plainLookup() {
  quilp_request* request = quilp_request_new(QUILP_MOVIE_SEARCH);
  quilp_request_set_text(request, QUILP_KEYWORD, "The.Paper.Lighthouse.2011.1080p");
  const quilp_reason reason = reasonOf(request);
  quilp_request_free(request);
  return reason == QUILP_OK;
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
  std::vector<double> plain;
  std::vector<double> plainOver;
  for (auto _ : state) {
    bare.push_back(timeOf(state, bareRun));
    call.push_back(timeOf(state, lookup));
    over.push_back(call.back() - bare.back());
    plain.push_back(timeOf(state, plainLookup));
    plainOver.push_back(plain.back() - bare.back());
  }
  state.counters["plain_ms"] = median(plain);
  state.counters["plain_over_ms"] = median(plainOver);
  state.counters["bare_ms"] = median(bare);
  state.counters["call_ms"] = median(call);
  state.counters["over_ms"] = median(over);
}
BENCHMARK(shellCall)->Arg(10)->Arg(1000)->UseRealTime()->Unit(benchmark::kMillisecond);

/// How long after its end a call returns: 0 by the deadline, 1 by a cancel.
void endedCall(benchmark::State& state) {
  if (!registerAddOn()) {
    state.SkipWithError("run this in the box");
    return;
  }
  const bool cancels = state.range(0) == 1;
  std::vector<double> late;
  for (auto _ : state) {
    quilp_request* request = quilp_request_new(QUILP_TV_SEARCH);
    quilp_request_set_text(request, QUILP_KEYWORD, "x");
    quilp_request_set_number(request, QUILP_DEADLINE, cancels ? 0 : kLimit.count());
    auto end = Clock::now() + kLimit;
    std::thread canceller;
    if (cancels) {
      canceller = std::thread([&end, request] {
        std::this_thread::sleep_until(end);
        end = Clock::now();
        quilp_request_cancel(request);
      });
    }
    const quilp_reason reason = reasonOf(request);
    const auto now = Clock::now();
    if (canceller.joinable()) {
      canceller.join();
    }
    if (reason != (cancels ? QUILP_CANCELLED : QUILP_TIMED_OUT)) {
      state.SkipWithError("it ended otherwise");
    }
    late.push_back(milliseconds(now - end));
    quilp_request_free(request);
  }
  state.counters["late_ms"] = median(late);
  state.counters["latest_ms"] = *std::max_element(late.begin(), late.end());
}
BENCHMARK(endedCall)->Arg(0)->Arg(1)->Iterations(200)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
