#pragma once

#include <vector>

#include "name/fields.h"

// The reader of names as a module of its own: it is half as large as libquilp.so, which loads it
// when it is first asked to read a name.

namespace libquilp {

/// What the caller knows of a name; the numbers of quilp_name_kind.
enum class NamedKind { kAnyName, kMovieName, kEpisodeName, kSongName };

using ReadFields = void(const char* name, NamedKind kind, std::vector<KeyValues>& fields);

/// What the module exports, and where it is, from the folder of libquilp.so.
inline constexpr char kReadFields[] = "libquilp_read_fields";
inline constexpr char kNameModule[] = "quilp/names.so";

}  // namespace libquilp
