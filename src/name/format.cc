#include "name/format.h"

#include <string_view>

#include "name/song.h"

namespace libquilp {
namespace {

struct Signs {
  std::string_view between;  // artists
  std::string_view open;     // the title
  std::string_view close;
};

// Where a title or an artist looks like something else, other signs tell what it is.
constexpr Signs kSigns[] = {{" & ", "", ""}, {"+", "", ""}, {" & ", "《", "》"}, {"+", "《", "》"}};

std::string named(const Song& song, const Signs& signs) {
  std::string name = song.discId;
  std::string_view gap = name.empty() ? "" : " - ";
  for (const std::string& artist : song.artists) {
    name.append(gap) += artist;
    gap = signs.between;
  }
  name.append(name.empty() ? "" : " - ").append(signs.open).append(song.title).append(signs.close);
  const auto tag = [&name](std::string_view before, const std::string& value) {
    if (!value.empty()) {
      name.append(" [").append(before).append(value) += ']';
    }
  };
  for (const std::string& language : song.languages) {
    tag("", language);
  }
  tag("", song.vocalTrack);
  tag("style:", song.style);
  return song.container.empty() ? name : name + '.' + song.container;
}

}  // namespace

std::optional<std::string> formatted(const Song& song) {
  for (const Signs& signs : kSigns) {
    if (std::string name = named(song, signs); readSong(name) == song) {
      return name;
    }
  }
  return std::nullopt;
}

}  // namespace libquilp
