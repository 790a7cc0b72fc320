#include "plugin/observer.h"

#include <cstdio>

namespace libquilp {

void Context::tell(const std::string& message) const {
  if (observer != nullptr) {
    observer->message(message);
  } else {
    std::fputs(message.c_str(), stderr);
  }
}

}  // namespace libquilp
