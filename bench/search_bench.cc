#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <string>

#include "libquilp.h"

// A whole search beside the longest chain of its fetches, made by the client alone: find page,
// title page, plot-summary page. And beside the same fetches made by /bin/sh alone, all chains at
// the same time: what the machine allows. All in one run, in turn; the counters "over_chain" and
// "over_shell" are what counts. Run this in the box, with --site.

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

std::string fetch(const std::string& path) {
  return "/sbin/curl -s -L 'https://www.imdb.com" + path +
         "' -A Mozilla/5.0 --connect-timeout 15 --max-time 25 >/dev/null";
}

const std::string kFind = fetch("/find?ref_=nv_sr_fn&q=everything&s=tt");

/// The two fetches of a result; the sample site's rows are numbered.
std::string fetchesOf(int row) {
  const std::string page = "/title/tt" + std::to_string(9100000 + row);
  return fetch(page + "/?ref_=fn_tt_tt_1") + ';' + fetch(page + "/plotsummary");
}

std::string allFetches(int count) {
  std::string command = kFind + ';';
  for (int row = 1; row <= count; ++row) {
    command += '(' + fetchesOf(row) + ")&";
  }
  return command + "wait";
}

template <class Work>
double timeOf(Work work) {
  const auto start = Clock::now();
  work();
  return milliseconds(Clock::now() - start);
}

void run(benchmark::State& state, const std::string& command) {
  if (std::system(command.c_str()) != 0) {
    state.SkipWithError("the site does not answer: run this in the box, with --site");
  }
}

void search(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  double chain = 0;
  double shell = 0;
  double searched = 0;
  for (auto _ : state) {
    chain += timeOf([&] { run(state, kFind + ';' + fetchesOf(1)); });
    shell += timeOf([&] { run(state, allFetches(count)); });
    velMovie_* movies = nullptr;
    int n = 0;
    searched += timeOf([&] { n = imdbBasicGetMovies("everything", count, &movies); });
    if (n != count) {
      state.SkipWithError("too few results");
    }
    velFreeMovies(movies, n);
  }
  const auto n = static_cast<double>(state.iterations());
  state.counters["chain_ms"] = chain / n;
  state.counters["shell_ms"] = shell / n;
  state.counters["search_ms"] = searched / n;
  state.counters["over_chain"] = searched / chain;
  state.counters["over_shell"] = searched / shell;
}
BENCHMARK(search)->Arg(1)->Arg(5)->Arg(20)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
