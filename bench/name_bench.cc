#include <benchmark/benchmark.h>

#include <string>

#include "inputs.h"
#include "name/format.h"
#include "name/name.h"
#include "name/song.h"

// Reading names of releases and of songs: ordinary ones, and one name of up to 10 MB, where the
// time for a byte must not grow with the size.

namespace {

using libquilp::readName;
using libquilp::readSong;

const char* const kSongs[] = {
    "林小雨-夜航船-國語-流行.mkv",
    "Anna Lane & Tom Reed - Harbour Lights [Karaoke].mp4",
    "Harbour Lights (In the Style of Anna Lane) [Karaoke Version].mp4",
    "SC1234-05 - Anna Lane - Harbour Lights.cdg",
    "林小雨[F]＋陳大海[M]_夜航船[國][L].mkv",
    "Anna Lane ft. Tom Reed - Harbour Lights (Instrumental).mp3",
};

/// The same names that cleaning is measured with, but every field of them.
void readReleases(benchmark::State& state) {
  for (auto _ : state) {
    for (const char* name : bench::kReleaseNames) {
      benchmark::DoNotOptimize(readName(name));
    }
  }
  state.SetItemsProcessed(state.iterations() *
                          static_cast<std::int64_t>(std::size(bench::kReleaseNames)));
}
BENCHMARK(readReleases);

void readSongs(benchmark::State& state) {
  for (auto _ : state) {
    for (const char* name : kSongs) {
      benchmark::DoNotOptimize(readSong(name));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(std::size(kSongs)));
}
BENCHMARK(readSongs);

void formatRelease(benchmark::State& state) {
  const libquilp::Name name = readName(bench::kReleaseNames[1]);
  for (auto _ : state) {
    benchmark::DoNotOptimize(libquilp::formatted(name));
  }
}
BENCHMARK(formatRelease);

template <class Read>
void oneName(benchmark::State& state, Read read, const std::string& piece) {
  const std::string name = bench::repeated(piece, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(read(name));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(name.size()));
}

const auto kRelease = [](const std::string& name) { return readName(name); };
const auto kSong = [](const std::string& name) { return readSong(name); };

#define ONE_NAME(name, read, piece) \
  BENCHMARK_CAPTURE(oneName, name, read, std::string(piece))->Arg(100 << 10)->Arg(10 << 20)

ONE_NAME(words, kRelease, "word.");
ONE_NAME(releases, kRelease, "Harbour.Lights.2011.S01E01.1080p.BluRay.x264-SALTY ");
ONE_NAME(brackets, kRelease, "[(");
ONE_NAME(pairs, kRelease, "[a](b)");
ONE_NAME(digits, kRelease, "1");
ONE_NAME(years, kRelease, "2011.");
ONE_NAME(ranges, kRelease, "E01-");
ONE_NAME(folders, kRelease, "a/");
ONE_NAME(wide, kRelease, "第01话");
ONE_NAME(songWords, kSong, "word-");
ONE_NAME(songBrackets, kSong, "[M](");
ONE_NAME(songWide, kSong, "国语-");

}  // namespace
