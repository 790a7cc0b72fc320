#include "scan/album_tags.h"

#include <taglib/fileref.h>
#include <taglib/tpropertymap.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>

#include "scan/source.h"

namespace quilp {
namespace {

constexpr std::size_t kMostFiles = 20;

/// Counts values, of which one may be that of most files.
class Votes {
 public:
  void add(const std::string& value) {
    ++files_;
    if (!value.empty()) {
      ++votes_[value];
    }
  }

  std::string winner() const {
    for (const auto& [value, votes] : votes_) {
      if (votes * 2 > files_) {
        return value;
      }
    }
    return {};
  }

 private:
  std::map<std::string, int> votes_;
  int files_ = 0;
};

std::string valueOf(const TagLib::PropertyMap& tags, const char* name) {
  const auto found = tags.find(name);
  return found != tags.end() && !found->second.isEmpty()
             ? found->second.front().stripWhiteSpace().to8Bit(true)
             : "";
}

}  // namespace

AlbumTags albumTagsOf(const std::vector<std::string>& files) {
  constexpr bool kReadsSound = false;
  Votes albums;
  Votes artists;
  Votes years;
  for (std::size_t i = 0; i < std::min(files.size(), kMostFiles); ++i) {
    std::error_code failure;
    if (!std::filesystem::is_regular_file(files[i], failure)) {
      continue;  // a FIFO would be waited for
    }
    const TagLib::FileRef file(files[i].c_str(), kReadsSound);
    if (file.isNull()) {
      continue;
    }
    const TagLib::PropertyMap tags = file.file()->properties();
    const std::string artist = valueOf(tags, "ALBUMARTIST");
    albums.add(valueOf(tags, "ALBUM"));
    artists.add(artist.empty() ? valueOf(tags, "ARTIST") : artist);
    years.add(valueOf(tags, "DATE").substr(0, 4));
  }
  return {albums.winner(), artists.winner(), yearOf(years.winner())};
}

}  // namespace quilp
