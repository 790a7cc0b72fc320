#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ascii.h"
#include "libquilp.h"

namespace libquilp {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

/// More than the unreserved characters of the standard, so that a whole URL keeps its structure.
bool staysInAddress(unsigned char c) {
  return isAlnum(c) || (c != '\0' && std::strchr("-+_.~/:?&=\\\"", c) != nullptr);
}

}  // namespace

char to_hex(char value) { return kHexDigits[static_cast<unsigned char>(value) & 0x0F]; }

char from_hex(char digit) {
  const auto c = static_cast<unsigned char>(digit);
  return static_cast<char>(isDigit(c) ? c - '0' : toLower(c) - 'a' + 10);
}

char* url_encode(char* text) {
  if (text == nullptr) {
    return nullptr;
  }
  char* const encoded = static_cast<char*>(std::malloc(3 * std::strlen(text) + 1));
  if (encoded == nullptr) {
    return nullptr;
  }
  char* out = encoded;
  for (; *text != '\0'; ++text) {
    const auto c = static_cast<unsigned char>(*text);
    if (staysInAddress(c)) {
      *out++ = *text;
    } else if (c == ' ') {
      *out++ = '+';
    } else {
      *out++ = '%';
      *out++ = to_hex(static_cast<char>(c >> 4));
      *out++ = to_hex(*text);
    }
  }
  *out = '\0';
  return encoded;
}

char* url_decode(char* text) {
  if (text == nullptr) {
    return nullptr;
  }
  char* const decoded = static_cast<char*>(std::malloc(std::strlen(text) + 1));
  if (decoded == nullptr) {
    return nullptr;
  }
  char* out = decoded;
  while (*text != '\0') {
    if (*text == '+') {
      *out++ = ' ';
      ++text;
    } else if (*text != '%') {
      *out++ = *text++;
    } else if (text[1] == '\0') {
      ++text;
    } else if (text[2] == '\0') {
      *out++ = text[1];  // no pair follows: drop the "%", keep the character
      text += 2;
    } else {
      const int high = static_cast<unsigned char>(from_hex(text[1]));
      const int low = static_cast<unsigned char>(from_hex(text[2]));
      *out++ = static_cast<char>(16 * high + low);
      text += 3;
    }
  }
  *out = '\0';
  return decoded;
}

}  // namespace libquilp

char to_hex(char value) { return libquilp::to_hex(value); }

char char2hex(char digit) {
  const auto c = static_cast<unsigned char>(digit);
  if (libquilp::isDigit(c)) {
    return static_cast<char>(c - '0');
  }
  const unsigned char folded = libquilp::toLower(c);
  return static_cast<char>(folded >= 'a' && folded <= 'f' ? folded - 'a' + 10 : 16);
}

int StringConvert2PercentString(char* source, int sourceLength, char* destination,
                                int destinationSize) {
  // Positions are counted in 16 bits.
  if (source == nullptr || destination == nullptr || sourceLength < 1 ||
      sourceLength > destinationSize / 3 || sourceLength > UINT16_MAX) {
    return -1;
  }
  for (int i = 0; i < sourceLength; ++i) {
    // Below 0x10 one digit, then the terminator of the buffer: the text ends there, on purpose.
    char digits[3] = {};
    std::snprintf(digits, sizeof digits, "%x", static_cast<unsigned char>(source[i]));
    *destination++ = '%';
    *destination++ = digits[0];
    *destination++ = digits[1];
  }
  *destination = '\0';
  return 0;
}
