#pragma once

#include <optional>
#include <string>

namespace libquilp {

struct Song;

/// The canonical name of a song: "SC1234-05 - Artist & Artist - Title [zh] [instrumental].mkv". It
/// reads as that song; none where no name would.
std::optional<std::string> formatted(const Song& song);

}  // namespace libquilp
