#include <cstring>
#include <string>
#include <string_view>

#include "libquilp.h"
#include "text/removal.h"

namespace libquilp {
namespace {

/// Replaces "&#x41;" or "&#41;" by the table's text and drops the forms with one digit. The
/// inserted text is read again, since it can start a reference ("&#x26;#x41;"). It is not longer
/// than its reference, so it overwrites the end of the reference, and reading continues there.
void replaceReferences(std::string& text, std::string_view start, int base) {
  const auto digit = [&text, base](std::size_t i) {
    const int value = i < text.size() ? char2hex(text[i]) : base;
    return value < base ? value : -1;
  };
  const auto ends = [&text](std::size_t i) { return i < text.size() && text[i] == ';'; };

  std::size_t read = 0;
  std::size_t kept = 0;
  while (read < text.size()) {
    const std::size_t found = text.find(start, read);
    const std::size_t upTo = found == std::string::npos ? text.size() : found;
    std::memmove(text.data() + kept, text.data() + read, upTo - read);
    kept += upTo - read;
    read = upTo;
    if (found == std::string::npos) {
      break;
    }
    const std::size_t at = found + start.size();
    const int first = digit(at);
    const int second = digit(at + 1);
    if (first >= 0 && second >= 0 && ends(at + 2)) {
      const char* put = html_utf8[base * first + second];
      const std::size_t size = put != nullptr ? std::strlen(put) : 0;
      read = at + 3 - size;
      text.replace(read, size, put != nullptr ? put : "");
    } else if (first >= 0 && ends(at + 1)) {
      read = at + 2;
    } else {
      text[kept++] = text[read++];
    }
  }
  text.resize(kept);
}

}  // namespace
}  // namespace libquilp

void replace_string(std::string* text) {
  if (text == nullptr) {
    return;
  }
  libquilp::replaceReferences(*text, "&#x", 16);
  libquilp::replaceReferences(*text, "&#", 10);
  libquilp::removeAll(*text, '\r');
  libquilp::removeAll(*text, '\n');
}
