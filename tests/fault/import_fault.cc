// Preloaded by an import: makes the call of which QUILP_FAULT says the number fail, counted over
// all calls that reach files below /tmp/fault. QUILP_FAULT_REACHED is a file that tells that it
// did.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#define FAULT_REAL(name) \
  static const auto real = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name))

namespace {

std::atomic<long> calls(0);

bool isOurs(const char* path) { return std::strncmp(path, "/tmp/fault/", 11) == 0; }

/// Also a file without a name.
bool isOurs(int file) {
  char link[64];
  char path[512] = {};
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  return readlink(link, path, sizeof path - 1) > 0 && isOurs(path);
}

bool fails(const char* call, int error) {
  const char* const wanted = std::getenv("QUILP_FAULT");
  static const long turn = wanted == nullptr ? 0 : std::strtol(wanted, nullptr, 10);
  if (++calls != turn) {
    return false;
  }
  FAULT_REAL(open);
  const int told = real(std::getenv("QUILP_FAULT_REACHED"), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  dprintf(told, "%s\n", call);
  close(told);
  errno = error;
  return true;
}

int openAs(int (*real)(const char*, int, ...), const char* path, int flags, mode_t mode) {
  return isOurs(path) && fails("open", ENOSPC) ? -1 : real(path, flags, mode);
}

mode_t modeOf(int flags, va_list list) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  FAULT_REAL(open);
  va_list list;
  va_start(list, flags);
  const mode_t mode = modeOf(flags, list);
  va_end(list);
  return openAs(real, path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  FAULT_REAL(open64);
  va_list list;
  va_start(list, flags);
  const mode_t mode = modeOf(flags, list);
  va_end(list);
  return openAs(real, path, flags, mode);
}

ssize_t read(int file, void* buffer, size_t size) {
  FAULT_REAL(read);
  return isOurs(file) && fails("read", EIO) ? -1 : real(file, buffer, size);
}

ssize_t write(int file, const void* buffer, size_t size) {
  FAULT_REAL(write);
  return isOurs(file) && fails("write", ENOSPC) ? -1 : real(file, buffer, size);
}

ssize_t pwrite(int file, const void* buffer, size_t size, off_t at) {
  FAULT_REAL(pwrite);
  return isOurs(file) && fails("pwrite", ENOSPC) ? -1 : real(file, buffer, size, at);
}

ssize_t pwrite64(int file, const void* buffer, size_t size, off64_t at) {
  FAULT_REAL(pwrite64);
  return isOurs(file) && fails("pwrite", ENOSPC) ? -1 : real(file, buffer, size, at);
}

int ftruncate(int file, off_t size) noexcept {
  FAULT_REAL(ftruncate);
  return isOurs(file) && fails("ftruncate", EIO) ? -1 : real(file, size);
}

int fsync(int file) {
  FAULT_REAL(fsync);
  return isOurs(file) && fails("fsync", EIO) ? -1 : real(file);
}

int rename(const char* from, const char* to) noexcept {
  FAULT_REAL(rename);
  return isOurs(from) && fails("rename", EIO) ? -1 : real(from, to);
}

}  // extern "C"
