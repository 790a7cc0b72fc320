#pragma once

#include <sys/stat.h>

#include <cstddef>

namespace libquilp {

/// What a document or a page may hold: many times what a real one does.
inline constexpr std::size_t kReadLimit = std::size_t{64} << 20;

/// Whether a file can be read to its end: a FIFO would block, a device never end.
inline bool isReadable(const char* path) {
  struct stat status = {};
  return stat(path, &status) == 0 && S_ISREG(status.st_mode) &&
         static_cast<unsigned long long>(status.st_size) <= kReadLimit;
}

}  // namespace libquilp
