#include "plugin/registry.h"

#include <cstdio>
#include <cstring>

#include "platform.h"
#include "text/ini_file.h"

namespace libquilp {
namespace {

constexpr std::size_t kKeySize = 80;
constexpr char kClass[] = "Kestrawind";

/// A value of one section; null when the cut key of an overlong section name meets an entry without
/// a value.
const char* sectionValue(const IniFile& registry, const char* section, const char* key) {
  char name[kKeySize];
  std::snprintf(name, sizeof name, "%s:%s", section, key);
  return registry.value(name, "");
}

bool sectionHas(const IniFile& registry, const char* section, const char* key, const char* wanted) {
  const char* value = sectionValue(registry, section, key);
  return value != nullptr && std::strcmp(value, wanted) == 0;
}

char* firstEnabledShell(const char* type, bool ownClassOnly, char* shell, int size) {
  const auto room = static_cast<std::size_t>(size);
  std::memset(shell, 0, room);
  const IniFile registry(kRegistryFile);
  if (!registry.loaded()) {
    std::fprintf(stderr, "iniparser_load(%s) failed!\n", kRegistryFile);
    return nullptr;
  }
  for (int i = 0; i < registry.sections(); ++i) {
    const char* section = registry.section(i);
    if ((ownClassOnly && !sectionHas(registry, section, "Class", kClass)) ||
        !sectionHas(registry, section, "Type", type) ||
        !sectionHas(registry, section, "Enable", "TRUE")) {
      continue;
    }
    const char* command = sectionValue(registry, section, "Shell");
    if (command == nullptr) {
      return nullptr;
    }
    std::memcpy(shell, command, strnlen(command, room));
    return shell;
  }
  return nullptr;
}

}  // namespace

char* GetFirstEnabledShellByType(const char* type, char* shell, int size) {
  return firstEnabledShell(type, false, shell, size);
}

char* GetFirstEnabledShellByClass(const char* type, char* shell, int size) {
  return firstEnabledShell(type, true, shell, size);
}

}  // namespace libquilp
