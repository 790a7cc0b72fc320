#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Pieces of a song's name, which the passes of song.cc put together.

namespace libquilp {

inline bool isHigh(char c) { return static_cast<unsigned char>(c) >= 0x80; }

std::string lowered(std::string_view text);

/// Without what parts nothing any more at both ends.
std::string_view trimmed(std::string_view text, std::string_view ends = " -_");

/// Wide signs and letters become ASCII, a run of blanks one blank.
std::string plainForm(std::string_view text);

/// The length of a maker's disc number at the start of `text`, and the number in one form: two to
/// six letters, two to six digits, "-" and the track. Without a track only a whole text is one.
std::size_t discIdAt(std::string_view text, std::string& id);

struct StyleOf {
  std::string_view before;
  std::string_view artist;
};

/// "Title in the style of Artist"
std::optional<StyleOf> styleOf(std::string_view text);

/// The guest whom a text names: "feat. Guest"; in a bracket also "with Guest".
std::optional<std::string_view> guestOf(std::string_view text, bool bracket);

/// Adds the artists of a text: "A & B", "A feat. B", "A＋B", "Band, The"; of Chinese names also
/// "某某某 某某".
void addArtists(std::string_view text, bool chinese, std::vector<std::string>& artists);

}  // namespace libquilp
