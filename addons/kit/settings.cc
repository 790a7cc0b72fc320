#include "settings.h"

#include <sys/stat.h>

#include <cstdlib>
#include <stdexcept>

#include "platform.h"

namespace quilp::kit {

const char* settingsFile() {
  const char* const named = std::getenv("QUILP_CONFIG");
  return named != nullptr && *named != '\0' ? named : libquilp::kSettingsFile;
}

Settings::Settings() : file_(settingsFile()) {
  struct stat status {};
  if (!file_.loaded() && stat(settingsFile(), &status) == 0) {
    throw std::runtime_error(std::string(settingsFile()) + ": the settings cannot be read");
  }
}

std::string Settings::get(const std::string& section, const std::string& key,
                          const std::string& fallback) const {
  const char* const value =
      file_.loaded() ? file_.value((section + ':' + key).c_str(), nullptr) : nullptr;
  return value != nullptr && *value != '\0' ? value : fallback;
}

std::string catalogueFile() {
  return Settings().get("catalogue", "path", libquilp::kOfflineCatalogue);
}

}  // namespace quilp::kit
