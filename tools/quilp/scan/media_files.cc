#include "scan/media_files.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "ascii.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kVideo =
    " 3gp asf avi divx dvr-ms flv iso m2t m2ts m4v mkv mov mp4 mpe mpeg mpg mts ogm ogv rm rmvb tp "
    "trp ts vob webm wmv ";
constexpr std::string_view kAudio = " aac ape cdg dat flac kar m4a mid midi mp3 ogg wav wma ";

/// Blanks around the extension in lower case; a blank for none.
std::string extensionWord(const fs::path& path) {
  std::string extension = path.extension().native();
  if (extension.find(' ') != std::string::npos || extension.size() < 2) {
    return " ";
  }
  std::transform(extension.begin(), extension.end(), extension.begin(), libquilp::toLower);
  return ' ' + extension.substr(1) + ' ';
}

bool isMedia(const fs::path& path) {
  const std::string word = extensionWord(path);
  return word != " " && (kVideo.find(word) != std::string_view::npos ||
                         kAudio.find(word) != std::string_view::npos);
}

bool isHidden(const fs::path& path) { return path.filename().native().front() == '.'; }

void walk(const fs::path& folder, MediaFiles& files) {
  std::vector<fs::directory_entry> entries;
  std::error_code error;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    entries.push_back(*at);
  }
  if (error) {
    files.failures.push_back(folder.native() + ": " + error.message());
  }
  std::sort(entries.begin(), entries.end());
  for (const fs::directory_entry& entry : entries) {
    std::error_code ignored;
    if (isHidden(entry.path())) {
      continue;
    }
    if (entry.is_directory(ignored)) {
      if (!entry.is_symlink(ignored)) {
        walk(entry.path(), files);
      }
    } else if (isMedia(entry.path()) && entry.is_regular_file(ignored)) {
      files.paths.push_back(entry.path().native());
    }
  }
}

}  // namespace

bool isAudioFile(const std::string& path) {
  const std::string word = extensionWord(path);
  return word != " " && kAudio.find(word) != std::string_view::npos;
}

MediaFiles mediaFilesOf(const std::vector<std::string>& paths) {
  MediaFiles files;
  for (const std::string& path : paths) {
    std::error_code error;
    const std::size_t failures = files.failures.size();
    if (fs::is_directory(path, error)) {
      walk(path, files);
    } else if (!error && fs::exists(path)) {
      files.paths.push_back(path);
    } else {
      files.failures.push_back(path + ": " + error.message());
    }
    files.nothingRead = files.nothingRead && files.failures.size() > failures;
  }
  return files;
}

}  // namespace quilp
