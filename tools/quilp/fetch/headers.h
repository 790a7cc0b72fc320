#pragma once

#include <cstdint>
#include <string>

namespace quilp {

/// What the headers say that curl wrote to a file: those of the last answer.
struct Headers {
  int status = 0;
  std::string etag{};       // with its quotes
  std::string modified{};   // Last-Modified
  std::uint64_t total = 0;  // bytes of the whole file; 0 if unknown

  /// For If-Range: empty where nothing tells for sure that two answers are the same file.
  std::string validator() const { return etag.empty() || etag[0] == 'W' ? modified : etag; }
};

/// Without a file, everything is empty.
Headers readHeaders(const std::string& path);

}  // namespace quilp
