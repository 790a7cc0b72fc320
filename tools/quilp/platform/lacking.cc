#include "platform/lacking.h"

#include <unistd.h>

#include "kit/settings.h"

namespace quilp {
namespace {

std::string lackOfKey(const StockAddOn& addOn) {
  const kit::Settings settings;
  if (*addOn.key == '\0' || !settings.get(addOn.name, addOn.key, "").empty()) {
    return "";
  }
  const std::string file = settings.get(addOn.name, std::string(addOn.key) + "_file", "");
  if (file.empty()) {
    return std::string("the setting ") + addOn.key + " of [" + addOn.name +
           "] is missing: see quilp.conf(5)";
  }
  return access(file.c_str(), R_OK) == 0 ? "" : file + " cannot be read: it is to hold the key";
}

}  // namespace

std::string lackOf(const StockAddOn& addOn) {
  if (addOn.name == std::string("catalogue")) {
    const std::string file = kit::catalogueFile();
    if (file.front() == '/' && access(file.c_str(), F_OK) != 0) {
      return file + " is missing: \"quilp catalogue import\" makes it";
    }
  }
  return lackOfKey(addOn);
}

}  // namespace quilp
