#include "output/captured_output.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace quilp {

CapturedOutput::CapturedOutput()
    : output_(dup(STDOUT_FILENO)), file_(memfd_create("document", MFD_CLOEXEC)) {
  if (output_ < 0 || file_ < 0 || dup2(file_, STDOUT_FILENO) < 0) {
    throw std::system_error(errno, std::generic_category(), "cannot take over standard output");
  }
}

CapturedOutput::~CapturedOutput() {
  end();
  close(output_);
  close(file_);
}

std::string CapturedOutput::take() {
  end();
  std::string text;
  lseek(file_, 0, SEEK_SET);
  char piece[65536];
  for (ssize_t size = 0; (size = read(file_, piece, sizeof piece)) > 0;) {
    text.append(piece, static_cast<std::size_t>(size));
  }
  return text;
}

void CapturedOutput::end() {
  std::fflush(stdout);
  dup2(output_, STDOUT_FILENO);
}

}  // namespace quilp
