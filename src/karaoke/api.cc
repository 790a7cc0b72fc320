#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "karaoke/markers.h"
#include "plugin/shell_call.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

/// The number elements of an add-on's document.
struct NumberField {
  const char* element;
  int KTV_ExtraData_t::*number;
};

constexpr NumberField kNumberFields[] = {
    {"Language", &KTV_ExtraData_t::language},
    {"AudioTrack", &KTV_ExtraData_t::audioTrack},
    {"Gain", &KTV_ExtraData_t::gain},
};

/// The element's plain text; null when it has none, or only references to blanks. These documents
/// use no CDATA.
const char* textOf(const XMLNode& element) {
  const char* text = element.getText(0);
  return text != nullptr && *text != '\0' ? text : nullptr;
}

/// 0 for no text. What an int cannot hold becomes its nearest value, wherever a long is wider.
int numberOf(const char* text) {
  const long number = text != nullptr ? std::strtol(text, nullptr, 10) : 0;
  return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

// <KtvInfo><Title>TITLE</Title><TitleWordCount>2</TitleWordCount><Language>1</Language>
//   <AudioTrack>1</AudioTrack><Gain>3</Gain>
//   <Artist><Name Gender="1" Nationality="158">NAME</Name> … </Artist>
//   <Genre><Name>GENRE</Name> … </Genre></KtvInfo>
void readDocument(const XMLNode& document, KTV_ExtraData_t& info) {
  if (const char* title = textOf(document.getChildNode("Title"))) {
    info.title = title;
  }
  if (const char* words = textOf(document.getChildNode("TitleWordCount"))) {
    info.titlePatterns.push_back({{}, numberOf(words), kTitlePattern});
  }
  for (const NumberField& field : kNumberFields) {
    if (const char* number = textOf(document.getChildNode(field.element))) {
      info.*field.number = numberOf(number);
    }
  }
  document.getChildNode("Artist").forEachChild("Name", [&info](const XMLNode& artist) {
    if (const char* name = textOf(artist)) {
      info.artists.push_back({name,
                              numberOf(artist.getAttribute("Gender")),
                              numberOf(artist.getAttribute("Nationality")),
                              {}});
    }
  });
  document.getChildNode("Genre").forEachChild("Name", [&info](const XMLNode& genre) {
    if (const char* name = textOf(genre)) {
      info.genres.emplace_back(name);
    }
  });
}

}  // namespace
}  // namespace libquilp

int velGetKTVInfo(const char* path, KTV_ExtraData_t* info) try {
  using namespace libquilp;
  if (info == nullptr) {
    return 1;
  }
  if (path == nullptr) {
    path = "";
  }
  initKTVInfo(info);
  ShellCall shell("KTV");
  if (!shell.found()) {
    const char* slash = std::strrchr(path, '/');
    return BasicGetKTVInfo(slash != nullptr ? slash + 1 : path, info);
  }
  if (shell.run({"getKTVInfo", "-f", path}) != 0) {
    return 1;
  }
  const XMLNode document = shell.document("KtvInfo");
  if (!document) {
    return 1;
  }
  readDocument(document, *info);
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}

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
