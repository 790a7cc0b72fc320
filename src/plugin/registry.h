#pragma once

namespace libquilp {

inline constexpr int kShellSize = 1024;

/// The command of the first enabled add-on of the media type ("Movie", "TV", "Music", "KTV"): fills
/// `shell` and returns it, or null when there is none. A match without a command gives the empty
/// string; a command of `size` bytes or more leaves the buffer without a terminator.
char* GetFirstEnabledShellByType(const char* type, char* shell, int size);

/// The same, but only among add-ons that carry the library's own class.
char* GetFirstEnabledShellByClass(const char* type, char* shell, int size);

}  // namespace libquilp
