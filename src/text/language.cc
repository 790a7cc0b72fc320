#include <cstdio>
#include <cstring>
#include <string_view>

#include "libquilp.h"
#include "platform.h"
#include "text/ini_file.h"

namespace libquilp {
namespace {

constexpr std::size_t kBaseNameSize = 64;
constexpr std::size_t kKeySize = 1024;
constexpr std::size_t kCodeSize = 3;

std::string_view baseName(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash != std::string_view::npos) {
    path.remove_prefix(slash + 1);
  }
  return path.substr(0, path.rfind('.')).substr(0, kBaseNameSize - 1);
}

}  // namespace
}  // namespace libquilp

void getDefaultLang(const char** lang, char* shell) {
  using namespace libquilp;
  static thread_local char code[kCodeSize + 1];

  if (lang == nullptr) {
    return;
  }
  const std::string_view name = baseName(shell != nullptr ? shell : "");
  char key[kKeySize];
  std::snprintf(key, sizeof key, "%.*s:%s", static_cast<int>(name.size()), name.data(), "LANG");
  const IniFile catalogue(kCatalogueFile);
  const char* value = catalogue.value(key, "en");
  std::memset(code, 0, sizeof code);
  if (value != nullptr) {
    std::strncpy(code, value, kCodeSize);
  }
  *lang = code;
}
