#include "output/utf8.h"

#include <clocale>
#include <cwchar>

namespace quilp {
namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";

/// The length of the UTF-8 character that `text` starts with; 0 when it starts with none.
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

/// Calls visit(character) for each; an empty one stands for a byte that is no part of any.
template <class Visit>
void forEachCharacter(std::string_view bytes, Visit visit) {
  while (!bytes.empty()) {
    const std::size_t size = characterLength(bytes);
    visit(bytes.substr(0, size));
    bytes.remove_prefix(size > 0 ? size : 1);
  }
}

std::size_t widthOf(std::string_view character) {
  static const char* const kLocale = std::setlocale(LC_CTYPE, "C.UTF-8");
  const int width = kLocale != nullptr ? wcwidth(static_cast<wchar_t>(codeOf(character))) : 1;
  return width < 0 ? 1 : static_cast<std::size_t>(width);
}

}  // namespace

std::string validUtf8(std::string_view bytes) {
  std::string text;
  forEachCharacter(bytes, [&text](std::string_view character) {
    text += character.empty() ? kReplacement : character;
  });
  return text;
}

std::string lineText(std::string_view bytes) {
  std::string text;
  forEachCharacter(validUtf8(bytes), [&text](std::string_view character) {
    text += isControl(codeOf(character)) ? "?" : character;
  });
  return text;
}

std::size_t columnsOf(std::string_view text) {
  std::size_t columns = 0;
  forEachCharacter(text, [&columns](std::string_view c) { columns += widthOf(c); });
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
  forEachCharacter(text, [&](std::string_view character) {
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
