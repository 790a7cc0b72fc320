#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "libquilp.h"

// A whole search beside the longest chain of its fetches, made by the client alone: find page,
// title page, plot-summary page. Both in one run, in turn; the counter "ratio" is what counts.

namespace {

using Clock = std::chrono::steady_clock;

double seconds(Clock::duration duration) { return std::chrono::duration<double>(duration).count(); }

void chain(benchmark::State& state) {
  for (const char* path : {"/find?ref_=nv_sr_fn&q=everything&s=tt",
                           "/title/tt9100001/?ref_=fn_tt_tt_1", "/title/tt9100001/plotsummary"}) {
    const std::string command = std::string("/sbin/curl -s -L 'https://www.imdb.com") + path +
                                "' -o /dev/null -A Mozilla/5.0 --connect-timeout 15 --max-time 25";
    if (std::system(command.c_str()) != 0) {
      state.SkipWithError("the site does not answer: run this in the box, with --site");
      return;
    }
  }
}

void search(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Clock::duration ofChain{};
  Clock::duration ofSearch{};
  for (auto _ : state) {
    const auto start = Clock::now();
    chain(state);
    const auto middle = Clock::now();
    velMovie_* movies = nullptr;
    if (imdbBasicGetMovies("everything", count, &movies) != count) {
      state.SkipWithError("too few results");
    }
    const auto end = Clock::now();
    velFreeMovies(movies, count);
    ofChain += middle - start;
    ofSearch += end - middle;
  }
  const auto n = static_cast<double>(state.iterations());
  state.counters["chain_ms"] = 1000 * seconds(ofChain) / n;
  state.counters["search_ms"] = 1000 * seconds(ofSearch) / n;
  state.counters["ratio"] = seconds(ofSearch) / seconds(ofChain);
}
BENCHMARK(search)->Arg(1)->Arg(5)->Arg(20)->Iterations(5)->UseRealTime()->Unit(
    benchmark::kMillisecond);

}  // namespace
