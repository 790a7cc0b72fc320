#include "text/utf8.h"

namespace libquilp {

std::size_t characterLength(std::string_view text) {
  const auto byte = [text](std::size_t i) -> unsigned {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0;
  };
  const unsigned lead = byte(0);
  if (lead < 0x80) {
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4) {
    return 0;
  }
  // The second byte shows overlong forms, surrogates and codes that are too large.
  const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte(1) < lowest || byte(1) > highest) {
    return 0;
  }
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  for (std::size_t i = 2; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) {
      return 0;
    }
  }
  return size;
}

std::string validUtf8(std::string_view bytes) {
  std::string text;
  forEachCharacter(bytes, [&text](std::string_view character) {
    text += character.empty() ? "\xEF\xBF\xBD" : character;
  });
  return text;
}

}  // namespace libquilp
