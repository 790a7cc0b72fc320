#pragma once

#include <string>

namespace quilp {

/// Writes "quilp: TEXT" to standard error, on one line; nothing for an empty text.
void tell(const std::string& text);

}  // namespace quilp
