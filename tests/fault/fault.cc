#include "fault.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>
#include <sched.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/mman.h>
#include <sys/signalfd.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
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

#define FAULT_REAL(name) \
  static const auto real = reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name))

namespace {

std::atomic<bool> armed(false);
std::atomic<long> calls(0), failed(0), spared(0), balance(0);
int armedFamily = 0;
bool armedForGood = false;
long armedCall = 0;
bool traced = false;

// Programs that are started meanwhile are not ours to fail.
__attribute__((constructor)) void prepare() {
  traced = std::getenv("QUILP_FAULT_TRACE") != nullptr;
  unsetenv("LD_PRELOAD");
  void* frame = nullptr;
  backtrace(&frame, 1);  // loads what it needs
}

void traceCall() {
  void* frames[64];
  armed = false;
  backtrace_symbols_fd(frames, backtrace(frames, 64), STDERR_FILENO);
  armed = true;
}

/// iniparser 4.1 writes through null when it cannot have the tables of a new dictionary.
bool isTableOfDictionary(const void* caller, size_t count) {
  Dl_info info = {};
  return count > 1 && dladdr(caller, &info) != 0 && info.dli_sname != nullptr &&
         std::strcmp(info.dli_sname, "dictionary_new") == 0;
}

bool isTurn(int family) {
  if (!armed || family != armedFamily) {
    return false;
  }
  const long call = ++calls;
  return call == armedCall || (armedForGood && call > armedCall);
}

bool fails(int family, int error) {
  if (!isTurn(family)) {
    return false;
  }
  ++failed;
  if (traced) {
    traceCall();
  }
  errno = error;
  return true;
}

bool failsStream(std::FILE* stream) {
  constexpr int kErrorSeen = 0x20;  // glibc's: what ferror looks at
  const bool failing = fails(kRead, EIO);
  stream->_flags |= failing ? kErrorSeen : 0;
  return failing;
}

void* counted(void* block) {
  balance += block != nullptr ? 1 : 0;
  return block;
}

}  // namespace

extern "C" {

void faultArm(int family, bool lasting, long nth) {
  armedFamily = family;
  armedForGood = lasting;
  armedCall = nth;
  calls = failed = spared = 0;
  armed = true;
}

FaultCount faultDisarm() {
  armed = false;
  return {failed, spared};
}

long faultBalance() { return balance; }

void* malloc(size_t size) noexcept {
  return fails(kMemory, ENOMEM) ? nullptr : counted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size) noexcept {
  if (armed && isTableOfDictionary(__builtin_return_address(0), count)) {
    spared += isTurn(kMemory) ? 1 : 0;
    return counted(__libc_calloc(count, size));
  }
  return fails(kMemory, ENOMEM) ? nullptr : counted(__libc_calloc(count, size));
}

void* realloc(void* block, size_t size) noexcept {
  if (fails(kMemory, ENOMEM)) {
    return nullptr;
  }
  void* const moved = __libc_realloc(block, size);
  balance +=
      (moved != nullptr ? 1 : 0) - (block != nullptr && (moved != nullptr || size == 0) ? 1 : 0);
  return moved;
}

void free(void* block) noexcept {
  balance -= block != nullptr ? 1 : 0;
  __libc_free(block);
}

FILE* fopen(const char* path, const char* mode) {
  FAULT_REAL(fopen);
  return fails(kOpen, EMFILE) ? nullptr : real(path, mode);
}

FILE* fopen64(const char* path, const char* mode) { return fopen(path, mode); }

int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* argv, char* const* environment) {
  FAULT_REAL(posix_spawn);
  return fails(kSpawn, EAGAIN) ? EAGAIN : real(child, path, actions, attributes, argv, environment);
}

FILE* popen(const char* command, const char* mode) {
  FAULT_REAL(popen);
  return fails(kPopen, EMFILE) ? nullptr : real(command, mode);
}

int system(const char* command) {
  FAULT_REAL(system);
  return fails(kSystem, EAGAIN) ? -1 : real(command);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                   void* argument) noexcept {
  FAULT_REAL(pthread_create);
  return fails(kThread, EAGAIN) ? EAGAIN : real(thread, attributes, body, argument);
}

ssize_t read(int descriptor, void* buffer, size_t size) {
  FAULT_REAL(read);
  return fails(kRead, EIO) ? -1 : real(descriptor, buffer, size);
}

char* fgets(char* buffer, int size, FILE* stream) {
  FAULT_REAL(fgets);
  return failsStream(stream) ? nullptr : real(buffer, size, stream);
}

size_t fread(void* buffer, size_t size, size_t count, FILE* stream) {
  FAULT_REAL(fread);
  return failsStream(stream) ? 0 : real(buffer, size, count, stream);
}

// What a run under a guard needs of the system.

int eventfd(unsigned count, int flags) noexcept {
  FAULT_REAL(eventfd);
  return fails(kGuard, EMFILE) ? -1 : real(count, flags);
}

int signalfd(int descriptor, const sigset_t* mask, int flags) noexcept {
  FAULT_REAL(signalfd);
  return fails(kGuard, EMFILE) ? -1 : real(descriptor, mask, flags);
}

int memfd_create(const char* name, unsigned flags) noexcept {
  FAULT_REAL(memfd_create);
  return fails(kGuard, EMFILE) ? -1 : real(name, flags);
}

void* mmap(void* address, size_t size, int protection, int flags, int descriptor,
           off_t offset) noexcept {
  FAULT_REAL(mmap);
  return fails(kGuard, ENOMEM) ? MAP_FAILED
                               : real(address, size, protection, flags, descriptor, offset);
}

int clone(int (*body)(void*), void* stack, int flags, void* argument, ...) noexcept {
  FAULT_REAL(clone);
  return fails(kGuard, EAGAIN) ? -1 : real(body, stack, flags, argument);
}

char* mktemp(char* name) noexcept {
  FAULT_REAL(mktemp);
  if (fails(kName, EEXIST)) {
    *name = '\0';
    return name;
  }
  return real(name);
}

}  // extern "C"
