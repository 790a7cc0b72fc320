#pragma once

#include <string>
#include <string_view>

#include "scan/item.h"
#include "scan/row.h"

namespace quilp {

/// A text as part of a file's name: without separators, control characters, marks that turn the
/// direction of text, blanks and dots at its ends, and what other systems forbid.
std::string fileNamePart(std::string_view text);

/// The new path of an item's file by a pattern such as "{title} ({year})/{title} -
/// {season}x{episode}". The fields are title, year, season, episode (two digits), episode_title,
/// part, resolution, source, edition, group, id, and song (all that a song's name tells); what has
/// no value leaves out the brackets around it. A folder in the pattern is one below the file's own.
/// The extension stays. Throws std::runtime_error for an unknown field, and where nothing would be
/// left.
std::string nameByPattern(const std::string& pattern, const MediaItem& item, const ScanRow& row,
                          const std::string& file);

}  // namespace quilp
