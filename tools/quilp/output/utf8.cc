#include "output/utf8.h"

#include <clocale>
#include <cwchar>

namespace quilp {
namespace {

/// The code of a whole character.
char32_t codeOf(std::string_view character) {
  const auto byte = [character](std::size_t i) { return static_cast<unsigned char>(character[i]); };
  char32_t code = character.size() == 1 ? byte(0) : byte(0) & (0x7FU >> character.size());
  for (std::size_t i = 1; i < character.size(); ++i) {
    code = code << 6 | (byte(i) & 0x3FU);
  }
  return code;
}

bool isControl(char32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

std::size_t widthOf(std::string_view character) {
  static const char* const kLocale = std::setlocale(LC_CTYPE, "C.UTF-8");
  const int width = kLocale != nullptr ? wcwidth(static_cast<wchar_t>(codeOf(character))) : 1;
  return width < 0 ? 1 : static_cast<std::size_t>(width);
}

}  // namespace

std::string lineText(std::string_view bytes) {
  std::string text;
  libquilp::forEachCharacter(validUtf8(bytes), [&text](std::string_view character) {
    text += isControl(codeOf(character)) ? "?" : character;
  });
  return text;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  libquilp::forEachCharacter(text, [&columns](std::string_view c) { columns += widthOf(c); });
  return columns;
}

std::string fitted(const std::string& text, std::size_t columns) {
  const std::size_t all = columnsOf(text);
  if (all <= columns) {
    return text;
  }
  const std::size_t room = columns > 0 ? columns - 1 : 0;  // beside the ellipsis
  const std::size_t endsAt = room - room / 2;
  const std::size_t goesOnAt = all - room / 2;
  std::string start;
  std::string end;
  std::size_t at = 0;
  libquilp::forEachCharacter(text, [&](std::string_view character) {
    const std::size_t next = at + widthOf(character);
    if (next <= endsAt) {
      start += character;
    } else if (at >= goesOnAt) {
      end += character;
    }
    at = next;
  });
  return start + "…" + end;
}

}  // namespace quilp
