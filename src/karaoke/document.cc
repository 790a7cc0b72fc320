#include "karaoke/document.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "karaoke/markers.h"

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

/// 0 for no text. A value beyond the range of int becomes the nearest int, also where long is
/// wider.
int numberOf(const char* text) {
  const long number = text != nullptr ? std::strtol(text, nullptr, 10) : 0;
  return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

}  // namespace

// <KtvInfo><Title>TITLE</Title><TitleWordCount>2</TitleWordCount><Language>1</Language>
//   <AudioTrack>1</AudioTrack><Gain>3</Gain>
//   <Artist><Name Gender="1" Nationality="158">NAME</Name> … </Artist>
//   <Genre><Name>GENRE</Name> … </Genre></KtvInfo>
void readSong(const XMLNode& document, KTV_ExtraData_t& info) {
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

}  // namespace libquilp
