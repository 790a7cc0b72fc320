#pragma once

#include <string>
#include <string_view>

namespace libquilp {

/// Removes `pattern` until it is left nowhere, also where a removal makes a new occurrence: what
/// searching from the start over and over gives, in one walk.
void removeAll(std::string& text, std::string_view pattern);

void removeAll(std::string& text, char c);

/// A copy with `replacement` for each `c`.
std::string replaced(std::string_view text, char c, std::string_view replacement);

}  // namespace libquilp
