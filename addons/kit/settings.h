#pragma once

#include <string>

#include "text/ini_file.h"

namespace quilp::kit {

/// The settings of stock add-ons: an INI file. $QUILP_CONFIG names another one than the usual.
class Settings {
 public:
  /// Throws std::runtime_error where there is a file that cannot be read.
  Settings();

  /// Returns `fallback` where the file, the section or the key is absent.
  std::string get(const std::string& section, const std::string& key,
                  const std::string& fallback) const;

 private:
  libquilp::IniFile file_;
};

/// The file of the settings.
const char* settingsFile();

/// Where the offline catalogue is.
std::string catalogueFile();

}  // namespace quilp::kit
