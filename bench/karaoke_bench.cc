#include <benchmark/benchmark.h>

#include <string>

#include "libquilp.h"

namespace {

const char* const kNames[] = {
    "林小雨[M]_夜航船[國][L].mkv",
    "陳大海[M]+何月明[F]_風雨歸人[粵][R].mpg",
    "Anna Lane[F]&Tom Reed[M]_Harbour Lights[E][S].avi",
    "Los Tres Faros[G]_Noche de Sal[ES].mp4",
    "_Song Without a Singer.mkv",
    "北極星[G]_一直走[M][0].dat",
    "A Title Alone[J].mp3",
    "黃阿金[F]＋許文山[M]_港邊的夜[台][1].mkv",
};

void ordinaryNames(benchmark::State& state) {
  for (auto _ : state) {
    for (const char* name : kNames) {
      KTV_ExtraData_t info;
      initKTVInfo(&info);
      benchmark::DoNotOptimize(BasicGetKTVInfo(name, &info));
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(std::size(kNames)));
}
BENCHMARK(ordinaryNames);

/// The time that a parser takes for `piece` over and over, by the length in bytes.
template <class Parse>
void byLength(benchmark::State& state, Parse parse, const std::string& piece) {
  const auto size = static_cast<std::size_t>(state.range(0));
  std::string text;
  while (text.size() < size) {
    text += piece;
  }
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.c_str());
  for (auto _ : state) {
    KTV_ExtraData_t info;
    benchmark::DoNotOptimize(parse(bytes, &info));
  }
  state.SetComplexityN(state.range(0));
}

#define BY_LENGTH(name, parse, piece)             \
  BENCHMARK_CAPTURE(byLength, name, parse, piece) \
      ->RangeMultiplier(8)                        \
      ->Range(64, 1 << 18)                        \
      ->Complexity(benchmark::oN)

BY_LENGTH(longTitle, parseTitleAndLangAndVocal, "花 a");
BY_LENGTH(unknownBrackets, parseTitleAndLangAndVocal, "[");
BY_LENGTH(artists, parseArtist, "A[F]+");
BY_LENGTH(bracketsWithoutSeparator, parseArtist, "A[");

}  // namespace
