// Many lookups in one process: what it holds must not grow with their number.

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "lookups.h"
#include "plot.h"
#include "support.h"

namespace {

using test::Asked;

/// One lookup of a round: beside the site, or by tests/addon.sh, which is spoiled or not.
struct Turn {
  std::string function;
  Asked asked;
  bool hostile = false;         // what no honest page, add-on or caller would give
  const char* spoil = nullptr;  // null: no add-on
};

// clang-format off
const std::vector<Turn> kSiteTurns = {
  {"velSearchMovie", {"The.Paper.Lighthouse.2011.1080p", 1}},
  {"velSearchMovie", {"everything"}},
  {"velSearchMovie", {"broken lantern", 8}, true},  // eight broken title pages
  {"velSearchMovie", {"fault500 salt", 1}, true},
  {"velPrintSearchMovie", {"salt ember", 1}},
  {"imdbGetMovies", {"lighthouse", 1}},
  {"velGetMovieByID", {"tt9000001"}},
  {"velGetMovieByID", {"faultcut-tt9000002"}, true},
  {"velGetMovieByID", {"faultbinary-tt9000002"}, true},
  {"velGetMovieByID", {"tt9'; touch /tmp/ran; '"}, true},
  {"velGetMovieByID", {"tt9000009"}, true},  // leaves by an error
  {"velPrintMovieByID", {"faultclosed-tt9000004"}, true},
  {"velSearchTVShows", {"signal row", 1}},
  {"velSearchTVShows", {"no such show", 1}},
  {"velGetTVShowByID", {"tt8000001"}},
  {"velGetTVShowByID", {"tt8000004"}, true},  // a picture's address with a command
  {"velGetTVShowByID", {"tt8000005"}, true},  // leaves by an error
  {"velPrintTVEpisode", {"tt8000001", 0, "", "en", 2, 3}},
  {"velGetTVEpisode", {"tt8000001", 0, "", nullptr, 2, 99}, true},
  {"velSearchAlbum", {"salt rope", 1, "tin harbour"}},
  {"velSearchAlbum", {"x\"'$(touch /tmp/ran)\n", 1, "[a-c]{1,2}"}, true},
  {"velGetAlbumByArtist", {"torn sleeve", 3}, true},  // abandons its list
  {"velGetAlbumByArtist", {"odd shapes"}, true},
  {"velGetArtistThumbnail", {"night rush", 1}},  // the service is busy at first
  {"velGetArtistThumbnail", {"curly braces", 1}, true},
  {"velPrintGetArtistThumbnail", {"tin harbour"}},
  {"velGetKTVInfo", {"/share/Ann Lee[F]&Bo Wu[M]_A title[Eng][R].mpg"}},
  {"velGetKTVInfo", {"\xE5[[\xE6_\xFF[]&&[[\x01_.\xE8"}, true},
};
// clang-format on

/// The site's turns, then every lookup by an honest add-on and by a spoiled one.
std::vector<Turn> roundOfTurns() {
  const char* const spoils[] = {"program", "roleless", "large", "status", "signal",
                                "deep",    "child",    "cut",   "root",   "empty",
                                "bytes",   "slow",     "loud",  "nothing"};
  std::vector<Turn> turns = kSiteTurns;
  std::size_t n = 0;
  for (const test::Lookup& lookup : test::lookups()) {
    if (!lookup.type.empty()) {
      turns.push_back({lookup.function, lookup.usual, false, ""});
      turns.push_back({lookup.function, lookup.usual, true, spoils[n++ % std::size(spoils)]});
    }
  }
  return turns;
}

/// Whether it found something.
bool run(const Turn& turn) {
  const test::Lookup& lookup = test::lookup(turn.function);
  test::registerAddOn(turn.spoil != nullptr ? lookup.type : "none", QUILP_TESTS "/addon.sh");
  setenv("SPOIL", turn.spoil != nullptr ? turn.spoil : "", 1);
  test::Answer answer;
  lookup.run(turn.asked, answer, false);
  return lookup.kind == test::Kind::kFinds ? answer.result > 0 : answer.result == 0;
}

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

bool isWithin(const char* what, long first, long last, long slack) {
  std::fprintf(stderr, "%-22s %8ld after %ld lookups, %8ld at the end\n", what, first, kFirst,
               last);
  return last <= first + slack;
}

int soak(long lookups, const std::string& plot) {
  const auto round = roundOfTurns();
  const auto size = static_cast<long>(round.size());
  const long end = std::max(kFirst + size, (lookups + size - 1) / size * size);
  const long step = std::max<long>(1, end / size / kPoints) * size;
  const auto held = test::Holdings::now();
  std::vector<Sample> samples;
  samples.reserve(2 * kPoints + 1);  // its growth would be taken for the library's
  Sample first = {};
  for (long i = 1; i <= end; ++i) {
    const Turn& turn = round[static_cast<std::size_t>((i - 1) % size)];
    if (!run(turn) && !turn.hostile) {
      std::fprintf(stderr, "lookup %ld (%s) found nothing\n", i, turn.function.c_str());
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

// soak LOOKUPS [PLOT]; the lookups' own output goes to standard output.
int main(int argc, char** argv) {
  if (argc < 2) {
    return 2;
  }
  return soak(std::atol(argv[1]), argc > 2 ? argv[2] : "");
}
