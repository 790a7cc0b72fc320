#pragma once

#include <optional>
#include <string>

namespace libquilp {

struct Name;
struct Song;

/// The canonical name of a release: "Title (2011) {edition-Extended} [1080p Blu-ray]-GROUP.mkv",
/// "Title - S02E01-E03 - Episode.mkv", "Title - 2019-05-31.mkv". It reads as that release; none
/// where no name would.
std::optional<std::string> formatted(const Name& name);

/// The canonical name of a song: "SC1234-05 - Artist & Artist - Title [zh] [instrumental].mkv". It
/// reads as that song; none where no name would.
std::optional<std::string> formatted(const Song& song);

}  // namespace libquilp
