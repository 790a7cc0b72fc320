#pragma once

// Classify bytes as in the "C" locale, independent of the host's locale.

namespace libquilp {

constexpr bool isDigit(unsigned char c) { return c >= '0' && c <= '9'; }

constexpr bool isAlnum(unsigned char c) {
  return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

constexpr bool isSpace(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr unsigned char toLower(unsigned char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

}  // namespace libquilp
