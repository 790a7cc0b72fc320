#include <cstring>
#include <string_view>

#include "karaoke/markers.h"
#include "text/cutter.h"

void initKTVInfo(KTV_ExtraData_t* info) {
  if (info != nullptr) {
    info->language = info->reserved1 = info->gain = info->reserved2 = info->audioTrack = -1;
  }
}

int BasicGetKTVInfo(const char* name, KTV_ExtraData_t* info) {
  using namespace libquilp;
  if (name == nullptr || info == nullptr) {
    return 0;
  }
  std::string_view text = atMost({name, strnlen(name, kNameSize)}, kNameSize - 1);
  text = text.substr(0, text.rfind('.'));
  char buffer[kNameSize];
  buffer[text.copy(buffer, sizeof buffer - 1)] = '\0';

  char* title = buffer;
  if (char* underscore = std::strchr(buffer, '_')) {
    *underscore = '\0';
    if (parseArtist(bytes(buffer), info) != 0) {
      return 1;
    }
    title = underscore + 1;
  }
  return parseTitleAndLangAndVocal(bytes(title), info);
}
