#pragma once

#include <optional>
#include <string>
#include <vector>

#include "name/name.h"
#include "name/song.h"

namespace quilp {

enum class MediaKind { kMovie, kEpisode, kSong, kAlbum };

/// "movie", "episode", "song" or "album".
const char* nameOf(MediaKind kind);

/// What is identified as one: a file, the files of a film in parts, the folder of a disc or of an
/// album.
struct MediaItem {
  std::string path;                // as it was given; of a film in parts that of the first
  std::vector<std::string> files;  // all of them, in the order of their names
  MediaKind kind = MediaKind::kMovie;
  bool isFolder = false;
  libquilp::Name name{};  // of a movie, an episode or an album
  libquilp::Song song{};
};

struct MediaItems {
  std::vector<MediaItem> items;
  std::size_t extras = 0;  // files left out: samples, trailers, and what else comes with a film
};

/// Sorts files into items by their names alone. With a kind, all are of that kind.
MediaItems itemsOf(const std::vector<std::string>& files, std::optional<MediaKind> kind);

}  // namespace quilp
