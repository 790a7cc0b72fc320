#pragma once

namespace libquilp {

inline constexpr int kEntityCount = 253;
inline constexpr int kLongestEntityName = 8;

/// A named character reference, without "&" and ";".
struct Entity {
  char name[kLongestEntityName + 1];
  char16_t code;
};

/// Sorted by name, byte by byte.
extern const Entity kEntities[kEntityCount];

}  // namespace libquilp
