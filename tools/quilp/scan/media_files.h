#pragma once

#include <string>
#include <vector>

namespace quilp {

enum class MediaType { kMovie, kTV, kKaraoke };

struct MediaFiles {
  std::vector<std::string> paths;     // in the order of their names
  std::vector<std::string> failures;  // folders that could not be read, and why
};

/// The media files of a folder and the folders below it, told by their extensions. What is hidden
/// is passed over, and links to folders are not followed. Throws std::filesystem::filesystem_error
/// when the folder itself cannot be read.
MediaFiles mediaFilesOf(const std::string& folder, MediaType type);

}  // namespace quilp
