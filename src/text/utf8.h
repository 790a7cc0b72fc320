#pragma once

#include <string>
#include <string_view>

namespace libquilp {

/// The length of the UTF-8 character that `text` starts with; 0 when it starts with none.
std::size_t characterLength(std::string_view text);

/// The bytes as UTF-8: each byte that is not part of a character becomes U+FFFD.
std::string validUtf8(std::string_view bytes);

/// Calls visit(character) for each; an empty one stands for a byte that is no part of any.
template <class Visit>
void forEachCharacter(std::string_view bytes, Visit visit) {
  while (!bytes.empty()) {
    const std::size_t size = characterLength(bytes);
    visit(bytes.substr(0, size));
    bytes.remove_prefix(size > 0 ? size : 1);
  }
}

}  // namespace libquilp
