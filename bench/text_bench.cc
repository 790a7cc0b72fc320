#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "inputs.h"
#include "libquilp.h"

// Text routines on ordinary and hostile input of 64 KB and 1 MB: the time per byte must not grow.

namespace {

using bench::repeated;

void keyword(benchmark::State& state, const std::string& piece) {
  const std::string name = repeated(piece, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(ProcessKeyword(name.c_str(), 1));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(name.size()));
}

void decode(benchmark::State& state, const std::string& piece) {
  const std::string text = repeated(piece, static_cast<std::size_t>(state.range(0)));
  std::string decoded(text.size() + 1, '\0');
  for (auto _ : state) {
    benchmark::DoNotOptimize(decode_html_entities_utf8(decoded.data(), text.c_str()));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void remove(benchmark::State& state, const std::string& piece) {
  const std::string text = repeated(piece, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::string cleaned = text;
    benchmark::DoNotOptimize(removeEmptyChar(cleaned));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void replace(benchmark::State& state, const std::string& piece) {
  const std::string text = repeated(piece, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::string cleaned = text;
    replace_string(&cleaned);
    benchmark::DoNotOptimize(cleaned);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void releaseNames(benchmark::State& state, int mode) {
  for (auto _ : state) {
    for (const char* name : bench::kReleaseNames) {
      benchmark::DoNotOptimize(ProcessKeyword(name, mode));
    }
  }
  state.SetItemsProcessed(state.iterations() *
                          static_cast<std::int64_t>(std::size(bench::kReleaseNames)));
}
BENCHMARK_CAPTURE(releaseNames, plain, 0);
BENCHMARK_CAPTURE(releaseNames, encoded, 1);

/// The least work of decoding: find every "&", copy every byte.
void findAndCopy(benchmark::State& state, const std::string& piece) {
  const std::string text = repeated(piece, static_cast<std::size_t>(state.range(0)));
  std::string copy(text.size() + 1, '\0');
  for (auto _ : state) {
    const char* const end = text.data() + text.size();
    const char* from = text.data();
    while (const void* at = std::memchr(from, '&', static_cast<std::size_t>(end - from))) {
      from = static_cast<const char*>(at) + 1;
    }
    std::memcpy(copy.data(), text.c_str(), copy.size());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void sizes(benchmark::internal::Benchmark* bench) { bench->Arg(64 << 10)->Arg(1 << 20); }

BENCHMARK_CAPTURE(keyword, openings, std::string("("))->Apply(sizes);
BENCHMARK_CAPTURE(keyword, closings, std::string(")"))->Apply(sizes);
BENCHMARK_CAPTURE(keyword, pairs, std::string("()[]"))->Apply(sizes);
BENCHMARK_CAPTURE(keyword, nested, std::string("(["))->Apply(sizes);
BENCHMARK_CAPTURE(keyword, words, std::string("word.S01E01_"))->Apply(sizes);
BENCHMARK_CAPTURE(decode, ampersands, std::string("&"))->Apply(sizes);
BENCHMARK_CAPTURE(decode, references, std::string("a &amp; b &#233; "))->Apply(sizes);
BENCHMARK_CAPTURE(decode, plain, std::string("ordinary text "))->Apply(sizes);
BENCHMARK_CAPTURE(findAndCopy, plain, std::string("ordinary text "))->Apply(sizes);
BENCHMARK_CAPTURE(decode, ordinary, bench::ordinaryText(1))->Apply(sizes);
BENCHMARK_CAPTURE(findAndCopy, ordinary, bench::ordinaryText(1))->Apply(sizes);
BENCHMARK_CAPTURE(remove, entities, std::string("&nbsp;"))->Apply(sizes);
BENCHMARK_CAPTURE(remove, nested, std::string("&nb"))->Apply(sizes);
BENCHMARK_CAPTURE(remove, plain, std::string("ordinary text "))->Apply(sizes);
BENCHMARK_CAPTURE(replace, references, std::string("a&#x26;#33;"))->Apply(sizes);
BENCHMARK_CAPTURE(replace, others, std::string("&#x"))->Apply(sizes);

}  // namespace
