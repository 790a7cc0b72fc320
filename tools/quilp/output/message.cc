#include "output/message.h"

#include <cstdio>

#include "output/utf8.h"

namespace quilp {

void tell(const std::string& text) {
  if (!text.empty()) {
    std::fprintf(stderr, "quilp: %s\n", lineText(text).c_str());
  }
}

}  // namespace quilp
