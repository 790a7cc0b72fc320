#pragma once

#include <sys/types.h>

#include <cstdint>
#include <memory>
#include <string>

namespace quilp::catalogue {

/// Bytes of a plain or gzip file. Throws std::runtime_error, which names the file, where it cannot
/// be read or ends early.
class ByteSource {
 public:
  explicit ByteSource(std::string path);
  ~ByteSource();
  ByteSource(const ByteSource&) = delete;
  ByteSource& operator=(const ByteSource&) = delete;

  /// Up to size bytes; 0 at the end.
  std::size_t read(char* to, std::size_t size);

  /// Bytes taken from the file so far.
  std::uint64_t consumed() const { return consumed_; }

 private:
  struct Gzip;
  std::size_t readFile(char* to, std::size_t size);
  std::size_t fill();
  std::size_t inflateSome(char* to, std::size_t size);

  std::string path_;
  int file_;
  std::string input_;
  std::uint64_t consumed_ = 0;
  std::unique_ptr<Gzip> gzip_;  // null for a plain file
};

}  // namespace quilp::catalogue
