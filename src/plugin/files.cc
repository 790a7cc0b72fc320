#include "plugin/files.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "platform.h"

namespace libquilp {

CTmpFile::~CTmpFile() {
  if (name_[0] != '\0') {
    std::remove(name_);
  }
}

void CTmpFile::choose() {
  std::strncpy(name_, kTemporaryName, sizeof name_ - 1);
  // Only the name: an add-on or the client makes the file.
  static_cast<void>(mktemp(name_));  // NOLINT(clang-analyzer-security.insecureAPI.mktemp)
}

int PrintFile(const char* path) {
  std::FILE* file = std::fopen(path, "r");
  if (file == nullptr) {
    return 1;
  }
  char piece[1024];
  while (std::fgets(piece, sizeof piece, file) != nullptr) {
    std::fputs(piece, stdout);
  }
  std::fclose(file);
  return 0;
}

std::optional<std::string> readFile(const char* path) {
  std::ifstream file(path);
  if (!file) {
    return {};
  }
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

std::string readLines(std::FILE* stream) {
  std::string text;
  char piece[2048];
  for (;;) {
    if (std::fgets(piece, sizeof piece, stream) != nullptr) {
      text += piece;
    } else if (std::ferror(stream) != 0 && errno == EINTR) {
      std::clearerr(stream);  // a signal of the host's is not the end of the page
    } else {
      return text;
    }
  }
}

char* SafeStrdup(const char* text) { return text != nullptr ? strdup(text) : nullptr; }

}  // namespace libquilp
