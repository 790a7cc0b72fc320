#pragma once

#include <cstring>

#include "libquilp.h"

// What the title and the artist parser share.

namespace libquilp {

/// Of a file name, of a title and of an artist's name, as much as fits with a terminator.
inline constexpr std::size_t kNameSize = 1024;

/// The only kind of title pattern there is.
inline constexpr int kTitlePattern = 1;

inline const char* characters(const unsigned char* text) {
  return reinterpret_cast<const char*>(text);
}

inline const unsigned char* bytes(const char* text) {
  return reinterpret_cast<const unsigned char*>(text);
}

inline bool startsWith(const unsigned char* text, const char* marker, int length) {
  return std::strncmp(characters(text), marker, static_cast<std::size_t>(length)) == 0;
}

/// The code of the marker that `text` starts with, whose length is stored; 0, and nothing stored,
/// when there is none.
inline int codeOf(const unsigned char* text, const KaraokeCodeEntry* row, int* length) {
  for (; row->length != 0; ++row) {
    if (startsWith(text, row->marker, row->length)) {
      *length = row->length;
      return row->code;
    }
  }
  return 0;
}

}  // namespace libquilp
