#include "scan/item.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <string_view>

#include "ascii.h"
#include "scan/media_files.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;
using libquilp::NameKind;

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), libquilp::toLower);
  return text;
}

/// Folders beside a film whose files are not the film.
bool isExtrasFolder(const std::string& folder) {
  static constexpr std::array<std::string_view, 14> kFolders = {
      "sample", "samples",    "trailer",        "trailers",
      "extra",  "extras",     "featurettes",    "behind the scenes",
      "bonus",  "interviews", "deleted scenes", "special features",
      "proof",  "shorts"};
  return std::find(kFolders.begin(), kFolders.end(), folder) != kFolders.end();
}

bool isDiscFolder(const std::string& folder) { return folder == "bdmv" || folder == "video_ts"; }

/// The folder of the disc that a file belongs to; empty for a file of its own.
fs::path discOf(const fs::path& file) {
  for (fs::path folder = file.parent_path(); folder.has_filename(); folder = folder.parent_path()) {
    if (isDiscFolder(lowered(folder.filename().native()))) {
      return folder.parent_path();
    }
  }
  return {};
}

bool isInExtras(const fs::path& file) {
  const fs::path folder = file.parent_path();
  return isExtrasFolder(lowered(folder.filename().native())) && folder.has_parent_path();
}

/// Whether a sound file is a song of karaoke: its name has more than artist and title.
bool tellsSong(const std::string& path, const libquilp::Song& song) {
  return libquilp::isSong(path) || !song.languages.empty() || !song.vocalTrack.empty() ||
         !song.discId.empty();
}

/// Parts of one film differ in the part alone.
bool isPartOf(const MediaItem& first, const MediaItem& part) {
  const libquilp::Name& a = first.name;
  const libquilp::Name& b = part.name;
  return first.kind == MediaKind::kMovie && part.kind == MediaKind::kMovie && !first.isFolder &&
         !a.part.empty() && !b.part.empty() && a.part != b.part && a.title == b.title &&
         a.year == b.year &&
         fs::path(first.path).parent_path() == fs::path(part.path).parent_path();
}

class Sorter {
 public:
  explicit Sorter(std::optional<MediaKind> kind) : kind_(kind) {}

  void add(const std::string& file) {
    const fs::path disc = discOf(file);
    if (!disc.empty() && kind_.value_or(MediaKind::kMovie) == MediaKind::kMovie) {
      addToFolder(disc.native(), MediaKind::kMovie, file);
      return;
    }
    MediaItem item{file, {file}};
    const bool isSound = isAudioFile(file);
    item.kind = kind_.value_or(MediaKind::kMovie);
    if (!kind_ || *kind_ == MediaKind::kSong) {
      item.song = libquilp::readSong(file);
      const bool isSong = isSound ? tellsSong(file, item.song) : libquilp::isSong(file);
      item.kind = kind_ || isSong ? MediaKind::kSong : item.kind;
    }
    if (item.kind == MediaKind::kSong) {
      addSong(std::move(item));
    } else if (kind_ == MediaKind::kAlbum || (!kind_ && isSound)) {
      addToFolder(fs::path(file).parent_path().native(), MediaKind::kAlbum, file);
    } else {
      addVideo(std::move(item));
    }
  }

  MediaItems take() { return std::move(found_); }

 private:
  /// One item for all files of a folder.
  void addToFolder(const std::string& folder, MediaKind kind, const std::string& file) {
    const auto [known, isNew] = folders_.try_emplace(folder, found_.items.size());
    if (!isNew) {
      found_.items[known->second].files.push_back(file);
      return;
    }
    MediaItem item{folder.empty() ? "." : folder, {file}, kind, true};
    item.name = libquilp::readName(folder, NameKind::kMovie);
    found_.items.push_back(std::move(item));
  }

  /// The sound and the pictures of a song are two files of one name.
  void addSong(MediaItem item) {
    const std::string stem = fs::path(item.path).replace_extension().native();
    const auto [known, isNew] = folders_.try_emplace(stem, found_.items.size());
    if (isNew) {
      found_.items.push_back(std::move(item));
    } else {
      found_.items[known->second].files.push_back(item.path);
    }
  }

  void addVideo(MediaItem item) {
    const NameKind hint = !kind_                          ? NameKind::kUnknown
                          : *kind_ == MediaKind::kEpisode ? NameKind::kEpisode
                                                          : NameKind::kMovie;
    item.name = libquilp::readName(item.path, hint);
    if (!item.name.extra.empty() || isInExtras(item.path)) {
      ++found_.extras;
      return;
    }
    if (!kind_ && item.name.kind == NameKind::kEpisode) {
      item.kind = MediaKind::kEpisode;
    }
    if (!found_.items.empty() && isPartOf(found_.items.back(), item)) {
      found_.items.back().files.push_back(item.path);
      return;
    }
    found_.items.push_back(std::move(item));
  }

  const std::optional<MediaKind> kind_;
  std::map<std::string, std::size_t> folders_;  // and the stems of songs: their items
  MediaItems found_;
};

}  // namespace

const char* nameOf(MediaKind kind) {
  switch (kind) {
    case MediaKind::kMovie:
      return "movie";
    case MediaKind::kEpisode:
      return "episode";
    case MediaKind::kSong:
      return "song";
    case MediaKind::kAlbum:
      break;
  }
  return "album";
}

MediaItems itemsOf(const std::vector<std::string>& files, std::optional<MediaKind> kind) {
  Sorter sorter(kind);
  for (const std::string& file : files) {
    sorter.add(file);
  }
  return sorter.take();
}

}  // namespace quilp
