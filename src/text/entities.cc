#include "text/entities.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "ascii.h"
#include "libquilp.h"
#include "text/entity_table.h"

namespace libquilp {
namespace {

constexpr unsigned long kUnicodeEnd = 0x110000;

char* putUtf8(char* out, std::uint32_t code) {
  const auto put = [&out](std::uint32_t byte) { *out++ = static_cast<char>(byte); };
  const auto putTail = [&put](std::uint32_t value) { put(0x80 | (value & 0x3F)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    putTail(code);
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    putTail(code >> 6);
    putTail(code);
  } else {
    put(0xF0 | (code >> 18));
    putTail(code >> 12);
    putTail(code >> 6);
    putTail(code);
  }
  return out;
}

/// `digits` points after the "#", `end` at the ";". Accepts what strtoul accepts: leading blanks, a
/// sign, a second "0x", no digits at all.
bool numericCode(const char* digits, const char* end, std::uint32_t& code) {
  int base = 10;
  if (*digits == 'x' || *digits == 'X') {
    ++digits;
    base = 16;
  }
  const char* first = digits;
  while (isSpace(static_cast<unsigned char>(*first))) {
    ++first;
  }
  if (static_cast<unsigned char>(*first) >= 0x80) {
    return false;  // in some locales these bytes are blanks
  }
  const int callersErrno = errno;
  errno = 0;
  char* stop = nullptr;
  const unsigned long value = std::strtoul(digits, &stop, base);
  const bool ok = errno == 0 && stop == end && value < kUnicodeEnd;
  errno = callersErrno;
  code = static_cast<std::uint32_t>(value);
  return ok;
}

bool namedCode(std::string_view name, std::uint32_t& code) {
  if (name.size() > kLongestEntityName) {
    return false;
  }
  const Entity* last = kEntities + kEntityCount;
  const Entity* hit = std::lower_bound(
      kEntities, last, name,
      [](const Entity& entity, std::string_view wanted) { return entity.name < wanted; });
  if (hit == last || hit->name != name) {
    return false;
  }
  code = hit->code;
  return true;
}

}  // namespace
}  // namespace libquilp

size_t decode_html_entities_utf8(char* dest, const char* src) {
  if (dest == nullptr) {
    return 0;
  }
  const char* read = src != nullptr ? src : dest;
  char* write = dest;
  const auto keepUpTo = [&](const char* stop) {
    const auto size = static_cast<size_t>(stop - read);
    if (write != read) {
      std::memmove(write, read, size);
    }
    write += size;
    read = stop;
  };

  // Search for the next ";" only after passing the last one: text without ";" is searched once,
  // even if it contains many "&".
  const char* semicolon = read;
  const char* ampersand = strchrnul(read, '&');
  for (; *ampersand != '\0'; ampersand = strchrnul(read, '&')) {
    keepUpTo(ampersand);
    if (semicolon <= ampersand) {
      semicolon = strchrnul(ampersand, ';');
      if (*semicolon == '\0') {
        ampersand = semicolon;
        break;
      }
    }
    const char* name = ampersand + 1;
    std::uint32_t code = 0;
    const bool known =
        *name == '#' ? libquilp::numericCode(name + 1, semicolon, code)
                     : libquilp::namedCode({name, static_cast<size_t>(semicolon - name)}, code);
    if (known) {
      write = libquilp::putUtf8(write, code);
      read = semicolon + 1;
    } else {
      keepUpTo(name);
    }
  }
  keepUpTo(ampersand);
  *write = '\0';
  return static_cast<size_t>(write - dest);
}

std::string libquilp::decoded(std::string_view text) {
  std::string result(text);
  decode_html_entities_utf8(result.data(), nullptr);
  result.resize(std::strlen(result.c_str()));
  return result;
}
