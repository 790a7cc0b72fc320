#include "karaoke/artist.h"

#include <new>
#include <string>
#include <string_view>

#include "karaoke/markers.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

/// The length of the separator that `text` starts with; 0 when there is none.
int separatorLength(const unsigned char* text) {
  for (const SeparatorEntry* row = s_SeparateStr; row->length != 0; ++row) {
    if (startsWith(text, row->text, row->length)) {
      return row->length;
    }
  }
  return 0;
}

void addArtist(std::string_view name, int gender, KTV_ExtraData_t& info) {
  if (!name.empty()) {
    info.artists.push_back({std::string(atMost(name, kNameSize - 1)), gender, 0, {}});
  }
}

}  // namespace

int getGender(const unsigned char* text, int* length) { return codeOf(text, g_GenderCode, length); }

int skipToNextArtist(const unsigned char* text, int* length) {
  for (const unsigned char* at = text; *at != '\0'; ++at) {
    if (const int separator = separatorLength(at); separator != 0) {
      *length = static_cast<int>(at - text) + separator;
      return 0;
    }
  }
  return 1;
}

}  // namespace libquilp

int parseArtist(const unsigned char* text, KTV_ExtraData_t* info) try {
  using namespace libquilp;
  if (text == nullptr || info == nullptr) {
    return 0;
  }
  const unsigned char* name = text;
  const auto add = [&](int gender) {
    addArtist({characters(name), static_cast<std::size_t>(text - name)}, gender, *info);
  };
  for (int length = 0;;) {
    if (*text == '\0') {
      add(0);
      return 0;
    }
    if (*text == '[') {
      add(getGender(text, &length));
      if (skipToNextArtist(text, &length) != 0) {
        return 0;  // a name without a separator before it is lost
      }
    } else {
      length = separatorLength(text);
      if (length == 0) {
        ++text;
        continue;
      }
      add(0);
    }
    text += length;
    name = text;
  }
} catch (const std::bad_alloc&) {
  return 1;
}
