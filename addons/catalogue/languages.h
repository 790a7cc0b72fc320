#pragma once

#include <string_view>

namespace quilp::catalogue {

/// The language that most titles of a region are in: "FR" gives "fr". Empty where there is no one.
std::string_view languageOf(std::string_view region);

}  // namespace quilp::catalogue
