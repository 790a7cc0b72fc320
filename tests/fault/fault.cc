#include "fault.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <regex.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Allocation goes to glibc's own names: looking the next library's up could allocate.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void __libc_free(void* block);
}

namespace {

std::atomic<bool> armed(false);
std::atomic<long> calls(0);
std::atomic<long> failed(0);
std::atomic<long> spared(0);
std::atomic<long> balance(0);
std::atomic<long> lost(0);
FaultFamily armedFamily = kMemoryFault;
long armedCall = 0;
bool armedForGood = false;
bool traced = false;

// Programs that are started meanwhile are not ours to fail.
__attribute__((constructor)) void prepare() {
  traced = std::getenv("QUILP_FAULT_TRACE") != nullptr;
  unsetenv("LD_PRELOAD");
  void* frames[1];
  backtrace(frames, 1);  // loads what it needs
}

/// iniparser 4.1 writes through null when the tables of a new dictionary cannot be had: no caller
/// can help that.
bool isBeyondHelp(const void* caller) {
  Dl_info info = {};
  return dladdr(caller, &info) != 0 && info.dli_sname != nullptr &&
         std::strcmp(info.dli_sname, "dictionary_new") == 0;
}

bool fails(FaultFamily family, const void* caller = nullptr) {
  if (!armed || family != armedFamily) {
    return false;
  }
  const long call = ++calls;
  if (call != armedCall && (!armedForGood || call < armedCall)) {
    return false;
  }
  if (caller != nullptr && isBeyondHelp(caller)) {
    ++spared;
    return false;
  }
  ++failed;
  if (traced) {
    armed = false;
    void* frames[64];
    backtrace_symbols_fd(frames, backtrace(frames, 64), STDERR_FILENO);
    armed = true;
  }
  return true;
}

void* counted(void* block) {
  balance += block != nullptr ? 1 : 0;
  return block;
}

template <class Result>
Result failure(Result result, int error) {
  errno = error;
  return result;
}

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool failsStream(std::FILE* stream) {
  if (!fails(kReadFault)) {
    return false;
  }
  constexpr int kErrorSeen = 0x20;  // glibc's: what ferror looks at
  stream->_flags |= kErrorSeen;
  errno = EIO;
  return true;
}

}  // namespace

extern "C" {

void faultArm(FaultFamily family, long nth, bool lasting) {
  armedFamily = family;
  armedCall = nth;
  armedForGood = lasting;
  calls = failed = 0;
  armed = true;
}

long faultDisarm() {
  armed = false;
  return failed;
}

long faultBalance() { return balance; }

long faultSpared() { return spared.exchange(0); }

long faultLost() { return lost.exchange(0); }

void* malloc(size_t size) noexcept {
  return fails(kMemoryFault) ? failure(nullptr, ENOMEM) : counted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) noexcept {
  return fails(kMemoryFault, __builtin_return_address(0)) ? failure(nullptr, ENOMEM)
                                                          : counted(__libc_calloc(count, size));
}

void* realloc(void* block, size_t size) noexcept {
  if (fails(kMemoryFault)) {
    return failure(nullptr, ENOMEM);
  }
  void* const moved = __libc_realloc(block, size);
  balance += block == nullptr && moved != nullptr ? 1 : block != nullptr && size == 0 ? -1 : 0;
  return moved;
}

void free(void* block) noexcept {
  balance -= block != nullptr ? 1 : 0;
  __libc_free(block);
}

int open(const char* path, int flags, ...) {
  static const auto real = next<int(const char*, int, ...)>("open");
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return fails(kOpenFault) ? failure(-1, EMFILE) : real(path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
  static const auto real = next<FILE*(const char*, const char*)>("fopen");
  return fails(kOpenFault) ? failure(nullptr, EMFILE) : real(path, mode);
}

FILE* fopen64(const char* path, const char* mode) { return fopen(path, mode); }

pid_t fork() noexcept {
  static const auto real = next<pid_t()>("fork");
  if (fails(kForkFault)) {
    return failure(-1, EAGAIN);
  }
  const pid_t child = real();
  if (child == 0) {
    armed = false;
  }
  return child;
}

FILE* popen(const char* command, const char* mode) {
  static const auto real = next<FILE*(const char*, const char*)>("popen");
  return fails(kPopenFault) ? failure(nullptr, EMFILE) : real(command, mode);
}

int system(const char* command) {
  static const auto real = next<int(const char*)>("system");
  return fails(kSystemFault) ? failure(-1, EAGAIN) : real(command);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                   void* argument) noexcept {
  static const auto real =
      next<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
  return fails(kThreadFault) ? EAGAIN : real(thread, attributes, body, argument);
}

ssize_t read(int descriptor, void* buffer, size_t size) {
  static const auto real = next<ssize_t(int, void*, size_t)>("read");
  return fails(kReadFault) ? failure<ssize_t>(-1, EIO) : real(descriptor, buffer, size);
}

char* fgets(char* buffer, int size, FILE* stream) {
  static const auto real = next<char*(char*, int, FILE*)>("fgets");
  return failsStream(stream) ? nullptr : real(buffer, size, stream);
}

size_t fread(void* buffer, size_t size, size_t count, FILE* stream) {
  static const auto real = next<size_t(void*, size_t, size_t, FILE*)>("fread");
  return failsStream(stream) ? 0 : real(buffer, size, count, stream);
}

int regcomp(regex_t* pattern, const char* text, int flags) {
  static const auto real = next<int(regex_t*, const char*, int)>("regcomp");
  const long before = balance;
  const int result = real(pattern, text, flags);
  if (result != 0) {
    const long gone = balance - before;
    lost += gone;
    balance -= gone;
  }
  return result;
}

char* mktemp(char* name) noexcept {
  static const auto real = next<char*(char*)>("mktemp");
  if (fails(kNameFault)) {
    errno = EEXIST;
    *name = '\0';
    return name;
  }
  return real(name);
}

}  // extern "C"
