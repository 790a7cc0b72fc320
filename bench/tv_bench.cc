#include <benchmark/benchmark.h>

#include <string>

#include "tv/details.h"

// Cutting a show's title page: the time has to grow as the page does.

namespace {

/// A page of that many bytes, with one cast row for each 2000 of them.
std::string pageOf(std::size_t size) {
  const std::string row =
      "<tr class=\"odd\"><td><span class=\"itemprop\" itemprop=\"name\">An Actor</span></td>"
      "<td class=\"character\"><div>\n          Jane Doe / Narrator &nbsp;(12 episodes)</div></td>";
  std::string page =
      "<h1 class=\"header\"> <span class=\"itemprop\" itemprop=\"name\">A Show</span>"
      "<span class=\"nobr\">(2008)</span></h1><table class=\"cast_list\">";
  while (page.size() < size - 2000) {
    page += row;
    page.append(2000 - row.size() - 5, ' ') += "</tr>";
  }
  page += "</table>";
  page.resize(size, ' ');
  return page;
}

void showPage(benchmark::State& state) {
  const std::string page = pageOf(static_cast<std::size_t>(state.range(0)));
  std::size_t actors = 0;
  for (auto _ : state) {
    velTVShowInfo info = velTVShowInfo();
    libquilp::readShowPage(page, "tt1", info);
    actors = info.actor_names.size();
    velFreeTVShowInfo(&info);
  }
  state.counters["actors"] = static_cast<double>(actors);
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(showPage)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

void hostileRole(benchmark::State& state) {
  std::string role;
  for (auto _ : state) {
    role.assign(static_cast<std::size_t>(state.range(0)), '-');
    libquilp::cutRole(role);
    benchmark::DoNotOptimize(role);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(hostileRole)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

}  // namespace
