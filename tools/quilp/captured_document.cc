#include "captured_document.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <string_view>
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
  // The output is looked at first: where it is closed, the file would take its place.
  Capture() : output_(dup(STDOUT_FILENO)), file_(memfd_create("document", MFD_CLOEXEC)) {
    if (output_ < 0 || file_ < 0 || dup2(file_, STDOUT_FILENO) < 0) {
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

  /// Ends the capture and gives what there is.
  std::string take() {
    end();
    std::string text;
    lseek(file_, 0, SEEK_SET);
    char piece[65536];
    for (ssize_t size = 0; (size = read(file_, piece, sizeof piece)) > 0;) {
      text.append(piece, static_cast<std::size_t>(size));
    }
    return text;
  }

 private:
  void end() {
    std::fflush(stdout);
    dup2(output_, STDOUT_FILENO);
  }

  int output_;
  int file_;
};

/// Whether anything but blanks stands between two tags or in a CDATA section.
bool holdsText(std::string_view document) {
  for (std::size_t at = 0; (at = document.find('>', at)) != std::string_view::npos;) {
    at = document.find_first_not_of(" \t\r\n", at + 1);
    if (at == std::string_view::npos) {
      return false;
    }
    constexpr std::string_view kSection = "<![CDATA[";
    const bool section = document.compare(at, kSection.size(), kSection) == 0;
    at += section ? kSection.size() : 0;
    if (document.compare(at, 1, section ? "]" : "<") != 0) {
      return true;
    }
  }
  return false;
}

}  // namespace

int printDocument(const std::function<int()>& print) {
  Capture capture;
  const int status = print();
  const std::string document = capture.take();
  if (std::fwrite(document.data(), 1, document.size(), stdout) != document.size() ||
      std::fflush(stdout) != 0) {
    fail("cannot write");
  }
  if (status != 0) {
    return status;
  }
  return holdsText(document) ? 0 : kNothingFound;
}

}  // namespace quilp
