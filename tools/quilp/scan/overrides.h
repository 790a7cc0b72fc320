#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quilp {

/// The file of --overrides: lines "PATTERN = IDENTIFIER", where the pattern is one of a shell, for
/// a path or for the last part of it. The last line that fits counts.
class Overrides {
 public:
  Overrides() = default;

  /// Throws std::runtime_error where the file cannot be read, or a line is none of these.
  explicit Overrides(const std::string& path);

  /// The identifier of a file; empty where no line fits.
  std::string find(const std::string& file) const;

 private:
  std::vector<std::pair<std::string, std::string>> lines_;
};

}  // namespace quilp
