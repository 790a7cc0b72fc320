// Many lookups in one process: what it holds must not grow with their number.

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>

#include "lookups.h"
#include "plot.h"
#include "support.h"

namespace {

constexpr long kFirst = 100;        // what is compared with the end
constexpr long kPoints = 200;       // of the plot, at least, where there are as many rounds
constexpr long kHeapSlackKiB = 64;  // arenas of threads that ran at the same time
constexpr long kMemorySlackKiB = 16 * 1024;

Sample measured(long lookups, const test::Holdings& expected) {
  const struct mallinfo2 heap = mallinfo2();
  const auto holdings = test::Holdings::after(expected);
  long pages = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  // Less the listing's own entries, and the descriptor it is read by.
  return {lookups,
          resident * sysconf(_SC_PAGESIZE) / 1024,
          static_cast<long>((heap.uordblks + heap.hblkhd) / 1024),
          static_cast<long>(holdings.descriptors) - 3,
          static_cast<long>(holdings.threads) - 2,
          static_cast<long>(holdings.children)};
}

void chooseRoute(bool addOn, const std::string& shell) {
  std::string registry;
  for (const char* type : {"Movie", "TV", "Music", "KTV"}) {
    registry += std::string("[") + type + "]\nClass=Kestrawind\nType=" + type +
                "\nEnable=" + (addOn ? "TRUE" : "FALSE") + "\nShell=" + shell + "\n";
  }
  test::writeFile("/etc/config/zorp.conf", registry);
}

bool isWithin(const char* what, long first, long last, long slack) {
  std::fprintf(stderr, "%-22s %8ld after %ld lookups, %8ld at the end\n", what, first, kFirst,
               last);
  return last <= first + slack;
}

int soak(long lookups, const std::string& shell, const std::string& plot) {
  const auto round = roundOfLookups();
  const auto size = static_cast<long>(round.size());
  const long end = std::max(kFirst + size, (lookups + size - 1) / size * size);
  const long step = std::max<long>(1, end / size / kPoints) * size;
  const auto held = test::Holdings::now();
  std::vector<Sample> samples;
  samples.reserve(2 * kPoints + 1);  // its growth would be taken for the library's
  Sample first = {};
  for (long i = 1; i <= end; ++i) {
    const Lookup& lookup = round[static_cast<std::size_t>((i - 1) % size)];
    chooseRoute(lookup.addOn, shell);
    bool found = false;
    try {
      found = lookup.call();
    } catch (const std::exception&) {
      // As the header says of some.
    }
    if (!found && !lookup.hostile) {
      std::fprintf(stderr, "lookup %ld (%s) found nothing\n", i, lookup.domain);
      return 1;
    }
    if (i == kFirst || i % step == 0) {
      samples.push_back(measured(i, held));
      first = i == kFirst ? samples.back() : first;
    }
  }
  const Sample& last = samples.back();
  if (!plot.empty()) {
    test::writeFile(plot, plotOf(samples));
  }
  bool steady = test::Holdings::after(held) == held;
  steady &= isWithin("resident memory, KiB", first.residentKiB, last.residentKiB, kMemorySlackKiB);
  steady &= isWithin("heap in use, KiB", first.heapKiB, last.heapKiB, kHeapSlackKiB);
  steady &= isWithin("descriptors", first.descriptors, last.descriptors, 0);
  steady &= isWithin("threads", first.threads, last.threads, 0);
  steady &= isWithin("child processes", first.children, last.children, 0);
  steady &= access("/tmp/ran", F_OK) != 0;
  return steady ? 0 : 1;
}

}  // namespace

// soak LOOKUPS ADD-ON [PLOT]; the lookups' own output goes to standard output.
int main(int argc, char** argv) {
  if (argc < 3) {
    return 2;
  }
  return soak(std::atol(argv[1]), argv[2], argc > 3 ? argv[3] : "");
}
