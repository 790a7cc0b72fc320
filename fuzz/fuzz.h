#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

// What the fuzz targets share.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// Most models restart from the beginning repeatedly, so longer inputs run without them.
inline constexpr std::size_t kLongestModelled = 4096;

inline std::string bytesOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The input up to its first zero byte.
inline std::string textOf(const std::uint8_t* data, std::size_t size) {
  return bytesOf(data, static_cast<std::size_t>(std::find(data, data + size, 0) - data));
}

/// A text with its terminator in a buffer of exactly that size, so that a sanitizer detects reads
/// beyond its end.
class Exact {
 public:
  explicit Exact(const std::string& text) : bytes_(text.c_str(), text.c_str() + text.size() + 1) {}
  char* text() { return bytes_.data(); }
  const unsigned char* bytes() const {
    return reinterpret_cast<const unsigned char*>(bytes_.data());
  }

 private:
  std::vector<char> bytes_;
};

/// Aborts the run with a message unless `holds` is true.
inline void expect(bool holds, const char* what) {
  if (!holds) {
    std::cerr << what << '\n';
    std::abort();
  }
}

inline void expectText(const char* what, const std::string& actual, const std::string& model) {
  if (actual != model) {
    std::cerr << what << " differs from the model\n--- is: " << actual << "\n--- model: " << model
              << '\n';
    std::abort();
  }
}

}  // namespace fuzz
