#pragma once

#include <string_view>
#include <vector>

namespace libquilp {

/// What a word of a song's name can tell beside artist and title.
enum class SongField {
  kLanguage,
  kVocalTrack,
  kStyle,
  kMark,    // says only that the file is a karaoke song's, or how good its picture is
  kFiller,  // means something only beside another tag: "version"
};

struct SongTag {
  std::string_view word;  // letters in lower case
  SongField field;
  std::string_view value;  // for a style: a part of the text
};

/// The tags of a text that is made of tags alone; empty for any other text.
std::vector<SongTag> songTagsOf(std::string_view text);

/// The tags of a square bracket's text: the short markers count there, too.
std::vector<SongTag> markerTagsOf(std::string_view text);

}  // namespace libquilp
