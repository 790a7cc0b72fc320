#include "captured_document.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "commands.h"

namespace quilp {
namespace {

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

/// Standard output goes to a file in memory as long as it lives.
class Capture {
 public:
  Capture() : file_(memfd_create("document", MFD_CLOEXEC)), output_(dup(STDOUT_FILENO)) {
    if (file_ < 0 || output_ < 0 || dup2(file_, STDOUT_FILENO) < 0) {
      fail("cannot take over standard output");
    }
  }
  ~Capture() {
    end();
    close(output_);
    close(file_);
  }
  Capture(const Capture&) = delete;
  Capture& operator=(const Capture&) = delete;

  /// Ends the capture and copies what there is; false when there is nothing.
  bool passOn() {
    end();
    bool any = false;
    lseek(file_, 0, SEEK_SET);
    char piece[65536];
    for (ssize_t size = 0; (size = read(file_, piece, sizeof piece)) > 0; any = true) {
      std::fwrite(piece, 1, static_cast<std::size_t>(size), stdout);
    }
    if (std::fflush(stdout) != 0) {
      fail("cannot write");
    }
    return any;
  }

 private:
  void end() {
    std::fflush(stdout);
    dup2(output_, STDOUT_FILENO);
  }

  int file_;
  int output_;
};

}  // namespace

int printDocument(const std::function<int()>& print) {
  Capture capture;
  const int status = print();
  const bool any = capture.passOn();
  if (status != 0) {
    return status;
  }
  return any ? 0 : kNothingFound;
}

}  // namespace quilp
