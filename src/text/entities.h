#pragma once

#include <string>
#include <string_view>

namespace libquilp {

/// Decodes the character references of `text`. The result ends at the first zero byte, original or
/// decoded.
std::string decoded(std::string_view text);

}  // namespace libquilp
