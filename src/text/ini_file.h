#pragma once

#include <iniparser.h>

#include <memory>

namespace libquilp {

/// An INI file of the platform, read whole. Strings it gives live as long as it does.
class IniFile {
 public:
  explicit IniFile(const char* path);

  bool loaded() const { return dictionary_ != nullptr; }
  int sections() const;
  const char* section(int i) const;
  /// `fallback` for a key that is not there; null for one that stands without a value.
  const char* value(const char* key, const char* fallback) const;

 private:
  std::unique_ptr<dictionary, decltype(&iniparser_freedict)> dictionary_;
};

}  // namespace libquilp
