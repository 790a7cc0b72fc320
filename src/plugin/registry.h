#pragma once

#include <optional>
#include <string>
#include <vector>

namespace libquilp {

inline constexpr int kShellSize = 1024;

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

/// The command of the first enabled add-on of the media type ("Movie", "TV", "Music", "KTV"): fills
/// `shell` and returns it, or null when there is none. A match without a command gives the empty
/// string; a command of `size` bytes or more leaves the buffer without a terminator.
char* GetFirstEnabledShellByType(const char* type, char* shell, int size);

/// The same, but only among add-ons that carry the library's own class.
char* GetFirstEnabledShellByClass(const char* type, char* shell, int size);

}  // namespace libquilp
