#pragma once

#include <optional>
#include <string>
#include <vector>

#include "plugin/observer.h"

namespace libquilp {

/// The longest path of an add-on; longer ones are truncated.
inline constexpr std::size_t kProgramSize = 1024;

/// The library's own class of add-ons.
inline constexpr char kOwnClass[] = "Kestrawind";

/// An add-on's section in the registry. A missing key gives an empty text. A member has no value if
/// the truncated key of an overlong section name matches a key without a value.
struct RegistrySection {
  using Value = std::optional<std::string>;

  std::string name;
  Value ownerClass;
  Value type;
  Value enable;
  Value shell;

  bool isEnabled() const { return enable == "TRUE"; }
  bool isOwnClass() const { return ownerClass == kOwnClass; }
};

/// The registry's sections in file order; no value if the file cannot be read or parsed.
std::optional<std::vector<RegistrySection>> readRegistry(const char* path);

/// The first section with an enabled add-on for the media type; null if there is none.
const RegistrySection* firstEnabledSection(const std::vector<RegistrySection>& registry,
                                           const char* type, bool ownClassOnly);

/// An add-on for one media type.
struct AddOn {
  std::string section;  // of the registry
  std::string program;  // empty if the section names none
};

/// The first enabled add-on of the media type ("Movie", "TV", "Music", "KTV").
std::optional<AddOn> findAddOn(const char* type, bool ownClassOnly, const Context& context);

}  // namespace libquilp
