// Preloaded into every program that the library starts: writes down which one it is, and its
// arguments.

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace {

/// The program's file, the number of arguments, the arguments: each ended by a zero byte. A
/// constructor gets what main will get.
__attribute__((constructor)) void writeDown(int argc, char** argv, char**) {
  const char* const log = std::getenv("QUILP_TRACE");
  if (log == nullptr) {
    return;
  }
  char program[4096] = {};
  if (readlink("/proc/self/exe", program, sizeof program - 1) < 0) {
    std::abort();
  }
  std::string line(program);
  line += '\0' + std::to_string(argc) + '\0';
  for (int i = 0; i < argc; ++i) {
    line.append(argv[i]) += '\0';
  }
  const int file = open(log, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  if (file < 0 || write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
    std::abort();
  }
  close(file);
}

}  // namespace
