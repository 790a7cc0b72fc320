#pragma once

#include <optional>
#include <string>
#include <vector>

#include "plugin/observer.h"

namespace libquilp {

/// The longest path of an add-on; the rest of a longer one is cut off.
inline constexpr std::size_t kProgramSize = 1024;

/// The class of the library's own add-ons.
inline constexpr char kOwnClass[] = "Kestrawind";

/// What a registry section says of an add-on: empty where it says nothing, none where the cut key
/// of an overlong section name meets an entry without a value.
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

/// The registry's sections in their order; none when the file cannot be read or parsed.
std::optional<std::vector<RegistrySection>> readRegistry();

/// The first section whose add-on is enabled for the media type; null when there is none.
const RegistrySection* firstEnabledSection(const std::vector<RegistrySection>& registry,
                                           const char* type, bool ownClassOnly);

/// An add-on that serves a kind of media.
struct AddOn {
  std::string section;  // of the registry
  std::string program;  // empty where the section names none
};

/// The first enabled add-on of the media type ("Movie", "TV", "Music", "KTV").
std::optional<AddOn> findAddOn(const char* type, bool ownClassOnly, const Context& context);

}  // namespace libquilp
