#pragma once

#include <functional>
#include <string>

namespace libquilp {

/// Why a text is not a well-formed document.
struct XMLFault {
  const char* reason = nullptr;  // null when it is well-formed
  unsigned long line = 0;
};

/// Checks a whole document without building anything from it. UTF-16 needs a byte order mark. The
/// bytes of an encoding that is not known are taken as letters. A check that ends early, since
/// `isOver`, gives a fault.
XMLFault findXMLFault(const std::string& document, const std::function<bool()>& isOver = nullptr);

}  // namespace libquilp
