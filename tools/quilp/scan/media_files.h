#pragma once

#include <string>
#include <vector>

namespace quilp {

enum class MediaType { kMovie, kTV, kKaraoke };

struct MediaFiles {
  std::vector<std::string> paths;     // in the order of their names
  std::vector<std::string> failures;  // paths that could not be read, and why
  bool nothingRead = true;            // each path that was given is among the failures
};

/// The files that are given and the media files of the folders that are given, and of those below
/// them, told by their extensions. What is hidden is passed over, and links to folders are not
/// followed.
MediaFiles mediaFilesOf(const std::vector<std::string>& paths, MediaType type);

}  // namespace quilp
