#include <benchmark/benchmark.h>

#include <string>

#include "libquilp.h"

// Text work, ordinary and hostile, at 64 KB and 1 MB: time for a byte must not grow with the size.

namespace {

std::string repeated(const std::string& piece, std::size_t size) {
  std::string text;
  text.reserve(size + piece.size());
  while (text.size() < size) {
    text += piece;
  }
  return text;
}

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

void releaseName(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        ProcessKeyword("The.Paper.Lighthouse.2011.1080p.BluRay.x264-SPARKS", 1));
  }
}
BENCHMARK(releaseName);

void sizes(benchmark::internal::Benchmark* bench) { bench->Arg(64 << 10)->Arg(1 << 20); }

BENCHMARK_CAPTURE(keyword, openings, std::string("("))->Apply(sizes);
BENCHMARK_CAPTURE(keyword, closings, std::string(")"))->Apply(sizes);
BENCHMARK_CAPTURE(keyword, pairs, std::string("()[]"))->Apply(sizes);
BENCHMARK_CAPTURE(keyword, nested, std::string("(["))->Apply(sizes);
BENCHMARK_CAPTURE(keyword, words, std::string("word.S01E01_"))->Apply(sizes);
BENCHMARK_CAPTURE(decode, ampersands, std::string("&"))->Apply(sizes);
BENCHMARK_CAPTURE(decode, references, std::string("a &amp; b &#233; "))->Apply(sizes);
BENCHMARK_CAPTURE(decode, plain, std::string("ordinary text "))->Apply(sizes);
BENCHMARK_CAPTURE(remove, entities, std::string("&nbsp;"))->Apply(sizes);
BENCHMARK_CAPTURE(remove, nested, std::string("&nb"))->Apply(sizes);
BENCHMARK_CAPTURE(remove, plain, std::string("ordinary text "))->Apply(sizes);
BENCHMARK_CAPTURE(replace, references, std::string("a&#x26;#33;"))->Apply(sizes);
BENCHMARK_CAPTURE(replace, others, std::string("&#x"))->Apply(sizes);

}  // namespace
