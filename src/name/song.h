#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace libquilp {

/// What the file name of a karaoke song tells. What it does not tell is empty.
struct Song {
  std::vector<std::string> artists;
  std::string title;
  std::vector<std::string> languages;  // two-letter codes; yue, nan and hak have none
  std::string vocalTrack;              // instrumental, vocal, guide; or L, R, S, 0, 1
  std::string style;                   // as the name has it
  std::string discId;                  // SC1234-05
  std::string container;               // the extension, in lower case

  bool operator==(const Song& other) const {
    return artists == other.artists && title == other.title && languages == other.languages &&
           vocalTrack == other.vocalTrack && style == other.style && discId == other.discId &&
           container == other.container;
  }
};

/// Reads the last part of a path as the name of a song.
Song readSong(std::string_view path);

/// Whether the path's folders or extension say that it is a karaoke song's.
bool isSong(std::string_view path);

}  // namespace libquilp
