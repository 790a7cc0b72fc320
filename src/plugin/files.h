#pragma once

#include <cstdio>
#include <optional>
#include <string>

namespace libquilp {

/// Picks the name of a temporary file. Another program creates the file; the destructor removes it.
class CTmpFile {
 public:
  CTmpFile() = default;
  CTmpFile(const CTmpFile&) = delete;
  CTmpFile& operator=(const CTmpFile&) = delete;
  virtual ~CTmpFile();

  /// Chooses a name under /tmp; the name is empty on failure.
  void choose();

  const char* name() const { return name_; }

 private:
  char name_[1024] = {};
};

/// Reads the whole file; no value on failure.
std::optional<std::string> readFile(const char* path);

/// Reads the file as the print functions copy it: text after a zero byte in a line is lost. No
/// value on failure.
std::optional<std::string> readCopied(const char* path);

/// Reads the rest of a stream, line by line in pieces; text after a zero byte in a piece is lost.
/// Stops after kReadLimit bytes.
std::string readLines(std::FILE* stream);

/// Like strdup, but returns null for null.
char* SafeStrdup(const char* text);

inline const char* orEmpty(const char* text) { return text != nullptr ? text : ""; }

}  // namespace libquilp
