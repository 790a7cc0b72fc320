#pragma once

#include <string>
#include <vector>

namespace quilp {

struct MediaFiles {
  std::vector<std::string> paths;     // in the order of their names
  std::vector<std::string> failures;  // paths that could not be read, and why
  bool nothingRead = true;            // none of the given paths could be read
};

/// The given files, and the media files in the given folders and all folders below, which are known
/// by their extensions. Skips hidden files and folders, and does not follow links to folders.
MediaFiles mediaFilesOf(const std::vector<std::string>& paths);

/// Whether the extension is one of a sound file.
bool isAudioFile(const std::string& path);

}  // namespace quilp
