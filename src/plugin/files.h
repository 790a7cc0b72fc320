#pragma once

#include <cstdio>
#include <optional>
#include <string>

namespace libquilp {

/// Picks the name of a temporary file. Another program creates the file, the destructor removes it.
class CTmpFile {
 public:
  CTmpFile() = default;
  CTmpFile(const CTmpFile&) = delete;
  CTmpFile& operator=(const CTmpFile&) = delete;
  virtual ~CTmpFile();

  /// Chooses a name under /tmp; it is empty when none can be had.
  void choose();

  const char* name() const { return name_; }

 private:
  char name_[1024] = {};
};

/// The whole file; none when it cannot be read.
std::optional<std::string> readFile(const char* path);

/// The file as the print functions copy it: what follows a zero byte in a line is lost. None when
/// it cannot be read.
std::optional<std::string> readCopied(const char* path);

/// All that is left in a stream, read line by line in pieces: what follows a zero byte in a piece
/// is not kept. Ends early beyond kReadLimit.
std::string readLines(std::FILE* stream);

/// strdup, but null for null.
char* SafeStrdup(const char* text);

inline const char* orEmpty(const char* text) { return text != nullptr ? text : ""; }

}  // namespace libquilp
