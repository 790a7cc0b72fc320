#pragma once

#include <string>
#include <string_view>

namespace libquilp {

/// `text` with its character references decoded; it ends at a zero byte, also at a decoded one.
std::string decoded(std::string_view text);

}  // namespace libquilp
