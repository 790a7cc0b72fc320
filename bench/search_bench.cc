#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "libquilp.h"
#include "quilp.h"

// Compares a whole search with the longest chain of its fetches, made by curl alone: find page,
// title page, plot-summary page. Also compares it with the same fetches as bare commands, with the
// chains of all results concurrent: the best that the machine can do. All run in turn; the counters
// "over_chain", "over_bare" and "plain_over_chain" (by quilp.h) are the results. Run this in the
// box, with --site.

namespace {

using Clock = std::chrono::steady_clock;

std::string fetch(const std::string& path) {
  return "/sbin/curl -s -L 'https://www.imdb.com" + path +
         "' -A Mozilla/5.0 --connect-timeout 15 --max-time 25 >/dev/null";
}

std::string titlePath(int row) {  // the sample site's rows are numbered
  return "/title/tt" + std::to_string(9100000 + row);
}

bool run(const std::string& command) { return std::system(command.c_str()) == 0; }

bool fetchFindPage() { return run(fetch("/find?ref_=nv_sr_fn&q=everything&s=tt")); }

bool fetchResult(int row) {
  return run(fetch(titlePath(row) + "/?ref_=fn_tt_tt_1")) &&
         run(fetch(titlePath(row) + "/plotsummary"));
}

/// The fetches of a search, one thread for each result as the library has them.
bool fetchAll(int count) {
  std::atomic<int> done{0};
  std::vector<std::thread> threads;
  if (!fetchFindPage()) {
    return false;
  }
  for (int row = 1; row <= count; ++row) {
    threads.emplace_back([&done, row] { done += fetchResult(row) ? 1 : 0; });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  return done == count;
}

bool searchAll(int count) {
  velMovie_* movies = nullptr;
  const int n = imdbBasicGetMovies("everything", count, &movies);
  velFreeMovies(movies, n);
  return n == count;
}

/// The same by quilp.h.
bool runSearch(int count) {
  quilp_request* request = quilp_request_new(QUILP_MOVIE_SEARCH);
  quilp_request_set_text(request, QUILP_KEYWORD, "everything");
  quilp_request_set_number(request, QUILP_COUNT, count);
  quilp_request_set_number(request, QUILP_ROUTE, QUILP_BUILT_IN);
  quilp_answer* answer = quilp_run(request);
  const bool found = quilp_answer_count(answer) == static_cast<std::size_t>(count);
  quilp_answer_free(answer);
  quilp_request_free(request);
  return found;
}

template <class Work>
double timeOf(benchmark::State& state, Work work) {
  const auto start = Clock::now();
  if (!work()) {
    state.SkipWithError("a page is missing: run this in the box, with --site");
  }
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void search(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  double chain = 0;
  double bare = 0;
  double searched = 0;
  double plain = 0;
  for (auto _ : state) {
    chain += timeOf(state, [] { return fetchFindPage() && fetchResult(1); });
    bare += timeOf(state, [count] { return fetchAll(count); });
    searched += timeOf(state, [count] { return searchAll(count); });
    plain += timeOf(state, [count] { return runSearch(count); });
  }
  const auto n = static_cast<double>(state.iterations());
  state.counters["chain_ms"] = chain / n;
  state.counters["bare_ms"] = bare / n;
  state.counters["search_ms"] = searched / n;
  state.counters["plain_ms"] = plain / n;
  state.counters["plain_over_chain"] = plain / chain;
  state.counters["over_chain"] = searched / chain;
  state.counters["over_bare"] = searched / bare;
}
BENCHMARK(search)->Arg(1)->Arg(5)->Arg(20)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
