#pragma once

#include <string>
#include <vector>

namespace quilp {

/// What the sound files of an album say of it; empty, or 0, where they are not of one mind.
struct AlbumTags {
  std::string album;
  std::string artist;
  int year = 0;
};

/// Reads the tags of the first files: enough to know an album.
AlbumTags albumTagsOf(const std::vector<std::string>& files);

}  // namespace quilp
