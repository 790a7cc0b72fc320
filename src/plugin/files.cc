#include "plugin/files.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform.h"
#include "readable.h"

namespace libquilp {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace

CTmpFile::~CTmpFile() {
  if (name_[0] != '\0') {
    std::remove(name_);
  }
}

void CTmpFile::choose() {
  std::strncpy(name_, kTemporaryName, sizeof name_ - 1);
  // Only the name: an add-on or curl creates the file.
  static_cast<void>(mktemp(name_));  // NOLINT(clang-analyzer-security.insecureAPI.mktemp)
}

std::optional<std::string> readFile(const char* path) {
  if (!isReadable(path)) {
    return {};
  }
  const File file(std::fopen(path, "r"));
  if (!file) {
    return {};
  }
  std::string text;
  char piece[4096];
  while (const std::size_t size = std::fread(piece, 1, sizeof piece, file.get())) {
    text.append(piece, size);
  }
  return std::ferror(file.get()) == 0 ? std::optional<std::string>(std::move(text)) : std::nullopt;
}

std::optional<std::string> readCopied(const char* path) {
  const File file(isReadable(path) ? std::fopen(path, "r") : nullptr);
  if (!file) {
    return {};
  }
  std::string text;
  char piece[1024];
  while (std::fgets(piece, sizeof piece, file.get()) != nullptr) {
    text += piece;
  }
  return text;
}

std::string readLines(std::FILE* stream) {
  std::string text;
  char piece[2048];
  while (text.size() <= kReadLimit) {
    if (std::fgets(piece, sizeof piece, stream) != nullptr) {
      text += piece;
    } else if (std::ferror(stream) != 0 && errno == EINTR) {
      std::clearerr(stream);  // a signal interrupted the read; the page goes on
    } else {
      break;
    }
  }
  return text;
}

char* SafeStrdup(const char* text) { return text != nullptr ? strdup(text) : nullptr; }

}  // namespace libquilp
