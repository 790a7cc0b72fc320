#pragma once

#include <sys/stat.h>

#include <cstddef>

namespace libquilp {

/// The largest document or page that is read: many times the size of real ones.
inline constexpr std::size_t kReadLimit = std::size_t{64} << 20;

/// Whether a file can be read to its end: a FIFO could block, a device might never end.
inline bool isReadable(const char* path) {
  struct stat status = {};
  return stat(path, &status) == 0 && S_ISREG(status.st_mode) &&
         static_cast<unsigned long long>(status.st_size) <= kReadLimit;
}

}  // namespace libquilp
