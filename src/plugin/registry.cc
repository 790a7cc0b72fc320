#include "plugin/registry.h"

#include <cstdio>

#include "platform.h"
#include "text/ini_file.h"

namespace libquilp {
namespace {

constexpr std::size_t kKeySize = 80;

RegistrySection::Value sectionValue(const IniFile& registry, const char* section, const char* key) {
  char name[kKeySize];
  std::snprintf(name, sizeof name, "%s:%s", section, key);
  const char* value = registry.value(name, "");
  return value != nullptr ? RegistrySection::Value(value) : std::nullopt;
}

}  // namespace

std::optional<std::vector<RegistrySection>> readRegistry(const char* path) {
  const IniFile file(path);
  if (!file.loaded()) {
    return {};
  }
  std::vector<RegistrySection> registry;
  for (int i = 0; i < file.sections(); ++i) {
    const char* name = file.section(i);
    registry.push_back({name, sectionValue(file, name, "Class"), sectionValue(file, name, "Type"),
                        sectionValue(file, name, "Enable"), sectionValue(file, name, "Shell")});
  }
  return registry;
}

const RegistrySection* firstEnabledSection(const std::vector<RegistrySection>& registry,
                                           const char* type, bool ownClassOnly) {
  for (const RegistrySection& section : registry) {
    if ((section.isOwnClass() || !ownClassOnly) && section.type == type && section.isEnabled()) {
      return &section;
    }
  }
  return nullptr;
}

std::optional<AddOn> findAddOn(const char* type, bool ownClassOnly, const Context& context) {
  const auto registry = readRegistry(kRegistryFile);
  if (!registry) {
    context.tell(std::string("iniparser_load(") + kRegistryFile + ") failed!\n");
    return {};
  }
  const RegistrySection* section = firstEnabledSection(*registry, type, ownClassOnly);
  if (section == nullptr || !section->shell) {
    return {};
  }
  return AddOn{section->name, section->shell->substr(0, kProgramSize)};
}

}  // namespace libquilp
