#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace libquilp {

/// The texts of a song's name between its separators.
struct SongParts {
  std::vector<std::string> texts;
  std::string_view glue;  // puts parts together again that belong to one title

  std::string joined(std::size_t from, std::size_t to) const;
};

/// Splits at the strongest separator that the text has: " - ", " / ", "_", "-" alone. Where the
/// artist is known, a "-" alone in a Latin text is a hyphen.
SongParts songPartsOf(std::string_view text, bool artistKnown);

/// "My_Artist-My_Title" and "My.Artist.-.My.Title" with blanks; a text whose "_" are separators as
/// it is.
std::string withBlanks(std::string_view text);

}  // namespace libquilp
