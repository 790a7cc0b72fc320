#include <algorithm>
#include <cstdlib>
#include <new>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz.h"
#include "name/format.h"
#include "name/name.h"
#include "name/song.h"

// Reads any bytes as the name of a release and of a song. The readers are compiled so that they
// count the blocks of code that they run, and here the bytes that they allocate: together that is
// the work, which must grow with the length alone.

namespace {

std::size_t work = 0;

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" void __wrap___sanitizer_cov_trace_pc() { ++work; }  // called at each block

/// The fuzzer's own part has memory from the operator that is replaced here.
extern "C" const char* __asan_default_options() { return "alloc_dealloc_mismatch=0"; }
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

void* operator new(std::size_t size) {
  work += size / 4;
  if (void* memory = std::malloc(size)) {
    return memory;
  }
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

using libquilp::Name;
using libquilp::NameKind;
using libquilp::NameSpan;

void checkSpans(const Name& name, std::size_t size) {
  std::vector<NameSpan> spans = name.spans;
  std::sort(spans.begin(), spans.end(),
            [](const NameSpan& a, const NameSpan& b) { return a.begin < b.begin; });
  std::size_t end = 0;
  for (const NameSpan& span : spans) {
    fuzz::expect(span.begin >= end && span.begin < span.end && span.end <= size,
                 "a span is empty, overlaps another or lies outside the name");
    end = span.end;
  }
}

std::size_t workFor(const std::string& text) {
  work = 0;
  libquilp::readName(text);
  libquilp::readSong(text);
  return work;
}

/// The work for eight times the text is about eight times the work.
void checkGrowth(const std::string& piece) {
  constexpr std::size_t kUnit = 2048;
  std::string once;
  while (once.size() < kUnit) {
    once += piece;
  }
  std::string more;
  for (int i = 0; i < 8; ++i) {
    more += once;
  }
  fuzz::expect(workFor(more) < 10 * workFor(once) + 16 * more.size(),
               "the work grows faster than the length");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::bytesOf(data, size);
  for (const NameKind hint : {NameKind::kUnknown, NameKind::kMovie, NameKind::kEpisode}) {
    checkSpans(libquilp::readName(text, hint), text.size());
  }
  libquilp::formatted(libquilp::readName(text));
  libquilp::formatted(libquilp::readSong(text));
  libquilp::isSong(text);
  // One in a hundred, and the shortest, since it takes long.
  const int sum = std::accumulate(text.begin(), text.end(), 0);
  if (!text.empty() && (text.size() < 8 || (text.size() < 1024 && sum % 128 == 0))) {
    checkGrowth(text);
  }
  return 0;
}
