#include "scan/nfo_ids.h"

#include <filesystem>
#include <fstream>
#include <string_view>
#include <vector>

#include "ascii.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = 1 << 20;
constexpr std::size_t kLeastDigits = 7;

/// `<uniqueid type="tmdb" default="true">603</uniqueid>` gives "tmdb:603".
std::string tmdbIdIn(std::string_view text) {
  const std::size_t type = text.find("<uniqueid type=\"tmdb\"");
  const std::size_t begin = type == std::string_view::npos ? type : text.find('>', type);
  if (begin == std::string_view::npos) {
    return {};
  }
  std::size_t end = begin + 1;
  while (end < text.size() && libquilp::isDigit(static_cast<unsigned char>(text[end]))) {
    ++end;
  }
  return end == begin + 1 ? "" : "tmdb:" + std::string(text.substr(begin + 1, end - begin - 1));
}

/// Programs write NFO files as XML, people as a line with an address: both have "tt" and digits.
std::string idIn(std::string_view text) {
  for (std::size_t at = text.find("tt"); at != std::string_view::npos;
       at = text.find("tt", at + 1)) {
    std::size_t end = at + 2;
    while (end < text.size() && libquilp::isDigit(static_cast<unsigned char>(text[end]))) {
      ++end;
    }
    const bool begins = at == 0 || !libquilp::isAlnum(static_cast<unsigned char>(text[at - 1]));
    if (begins && end - at - 2 >= kLeastDigits && end - at <= 12) {
      return std::string(text.substr(at, end - at));
    }
  }
  return tmdbIdIn(text);
}

std::string idInFile(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) {
    return {};
  }
  std::ifstream in(file, std::ios::binary);
  std::string text(kMostBytes, '\0');
  in.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(in.gcount()));
  return idIn(text);
}

std::vector<fs::path> placesOf(const MediaItem& item) {
  const fs::path path(item.path);
  const fs::path folder = item.isFolder ? path : path.parent_path();
  if (item.kind == MediaKind::kEpisode) {
    return {folder / "tvshow.nfo", folder.parent_path() / "tvshow.nfo"};
  }
  return {fs::path(path).replace_extension(".nfo"), folder / "movie.nfo"};
}

}  // namespace

std::string idFromNfo(const MediaItem& item) {
  if (item.kind != MediaKind::kMovie && item.kind != MediaKind::kEpisode) {
    return {};
  }
  for (const fs::path& place : placesOf(item)) {
    std::string id = idInFile(place);
    if (!id.empty()) {
      return id;
    }
  }
  return {};
}

}  // namespace quilp
