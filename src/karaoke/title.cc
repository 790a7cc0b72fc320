#include "karaoke/title.h"

#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "ascii.h"
#include "karaoke/markers.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

constexpr unsigned char kFirstLead = 0xC0;

/// Skips the character that starts here, by its lead byte alone, but not beyond the end.
const unsigned char* pastCharacter(const unsigned char* text) {
  // 0xE0 counts as the lead of two bytes, on purpose.
  const std::size_t size = *text >= 0xF0 ? 4 : *text >= 0xE1 ? 3 : 2;
  return text + strnlen(characters(text), size);
}

int lengthOf(const char* marker) { return static_cast<int>(std::strlen(marker)); }

/// The first call fills in the lengths; later calls only check a flag.
void fillLanguageLengths() {
  static const bool filled = [] {
    KaraokeLanguageEntry* row = g_LanguageCode;
    if (row->length1 != 0) {
      return true;  // the host has filled them
    }
    for (; row->code > 0; ++row) {
      row->length1 = lengthOf(row->marker1);
      row->length2 = lengthOf(row->marker2);
      row->length3 = lengthOf(row->marker3);
    }
    return true;
  }();
  static_cast<void>(filled);
}

void setTitle(std::string_view text, KTV_ExtraData_t& info) {
  info.title = atMost(text, kNameSize - 1);
  info.titlePatterns.push_back({info.title, utf8_word(bytes(info.title.c_str())), kTitlePattern});
}

}  // namespace

int utf8_word(const unsigned char* text) {
  int words = 0;
  while (text != nullptr && *text != '\0') {
    if (*text >= kFirstLead) {
      ++words;
      text = pastCharacter(text);
      continue;
    }
    if (!isAlnum(*text++)) {
      continue;
    }
    ++words;
    while (*text != '\0' && *text != ' ' && *text != '_' && *text < kFirstLead) {
      ++text;
    }
    if (*text >= kFirstLead) {
      ++words;  // skips only the lead byte: continuation bytes are not counted
    }
    if (*text != '\0') {
      ++text;
    }
  }
  return words;
}

int getLanguage(const unsigned char* text, int* length) {
  fillLanguageLengths();
  for (const KaraokeLanguageEntry* row = g_LanguageCode; row->code > 0; ++row) {
    if (startsWith(text, row->marker1, row->length1)) {
      *length = row->length1;
      return row->code;
    }
    if (startsWith(text, row->marker2, row->length2) ||
        startsWith(text, row->marker3, row->length3)) {
      return row->code;  // without a length, on purpose: the scanner depends on it
    }
  }
  return 0;
}

int getVocalTrack(const unsigned char* text, int* length) {
  return codeOf(text, g_VocalTrackCode, length);
}

}  // namespace libquilp

int parseTitleAndLangAndVocal(const unsigned char* text, KTV_ExtraData_t* info) try {
  using namespace libquilp;
  if (text == nullptr || info == nullptr) {
    return 0;
  }
  bool titleFound = false;
  bool languageFound = false;
  bool trackFound = false;
  int length = 0;
  while (*text != '\0') {
    if (*text != '[') {
      // The first bytes outside a marker are the title; all others are ignored.
      const std::size_t size = std::strcspn(characters(text), "[");
      if (!titleFound) {
        setTitle({characters(text), size}, *info);
        titleFound = true;
      }
      text += size;
      length = 0;
      continue;
    }
    if (!languageFound) {
      info->language = getLanguage(text, &length);
      if (info->language > 0) {
        languageFound = true;
        // A Chinese marker leaves the length unchanged. Either it is 0, and its bracket is read
        // once more, or it is the length of a track marker right before, and the scan goes on
        // inside.
        text += length;
        length = 0;
        continue;
      }
    }
    if (!trackFound) {
      info->audioTrack = getVocalTrack(text, &length);
      if (info->audioTrack > 0) {
        trackFound = true;
        text += length;
        continue;  // with the length unchanged
      }
    }
    ++text;
    length = 0;
  }
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}
