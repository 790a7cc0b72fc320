#pragma once

#include <string>
#include <string_view>

namespace libquilp {

/// Removes `pattern` until no occurrence is left, including occurrences that a removal creates. The
/// result is that of repeated searches from the start, in one pass.
void removeAll(std::string& text, std::string_view pattern);

void removeAll(std::string& text, char c);

/// Returns a copy in which `replacement` stands for each `c`.
std::string replaced(std::string_view text, char c, std::string_view replacement);

}  // namespace libquilp
