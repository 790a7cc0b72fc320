#pragma once

#include <iniparser.h>

#include <memory>
#include <string>
#include <vector>

namespace libquilp {

/// An INI file of the platform. The returned strings are valid as long as the object.
class IniFile {
 public:
  explicit IniFile(const char* path);

  bool loaded() const { return dictionary_ != nullptr; }
  int sections() const;
  const char* section(int i) const;
  /// The names of a section's keys, in lower case.
  std::vector<std::string> keys(const std::string& section) const;
  /// Returns `fallback` for a missing key, and null for a key without a value.
  const char* value(const char* key, const char* fallback) const;

 private:
  std::unique_ptr<dictionary, decltype(&iniparser_freedict)> dictionary_;
};

}  // namespace libquilp
