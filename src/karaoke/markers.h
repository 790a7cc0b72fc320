#pragma once

#include <cstring>

#include "libquilp.h"

// What the title and the artist parser share.

namespace libquilp {

/// Buffer size for a file name, a title or an artist's name, with the terminator.
inline constexpr std::size_t kNameSize = 1024;

/// The only kind of title pattern.
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

/// Returns the code of the marker at the start of `text` and stores its length. Returns 0 and
/// stores nothing if there is none.
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
