#include "text/removal.h"

#include <algorithm>

#include "ascii.h"
#include "libquilp.h"

namespace libquilp {

void removeAll(std::string& text, std::string_view pattern) {
  // Kept bytes move to the front; when they end with the pattern, it is removed at once. The
  // occurrence that ends first also starts first.
  std::size_t kept = text.find(pattern);
  if (kept == std::string::npos) {
    return;
  }
  for (std::size_t read = kept; read < text.size(); ++read) {
    text[kept++] = text[read];
    if (text[kept - 1] == pattern.back() && kept >= pattern.size() &&
        pattern.compare(0, pattern.size(), text.data() + kept - pattern.size(), pattern.size()) ==
            0) {
      kept -= pattern.size();
    }
  }
  text.resize(kept);
}

void removeAll(std::string& text, char c) {
  text.erase(std::remove(text.begin(), text.end(), c), text.end());
}

std::string replaced(std::string_view text, char c, std::string_view replacement) {
  std::string copy;
  for (const char own : text) {
    copy.append(own == c ? replacement : std::string_view(&own, 1));
  }
  return copy;
}

}  // namespace libquilp

std::string& removeEmptyChar(std::string& text) {
  if (text.empty()) {
    return text;
  }
  const auto blank = [&text](std::size_t i) {
    return libquilp::isSpace(static_cast<unsigned char>(text[i]));
  };
  // White space alone keeps its last byte, on purpose.
  std::size_t first = 0;
  while (first + 1 < text.size() && blank(first)) {
    ++first;
  }
  text.erase(0, first);
  std::size_t last = text.size() - 1;
  while (last > 0 && blank(last)) {
    --last;
  }
  text.erase(last + 1);
  libquilp::removeAll(text, "&nbsp;");
  libquilp::removeAll(text, "&raquo;");
  return text;
}
