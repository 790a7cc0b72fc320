#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/cutter.h"

// What the title pages of shows and of episodes have in common.

namespace libquilp {

/// The cut after removeEmptyChar.
std::optional<std::string> trimmed(Cut cut);

/// Appends every name of the block.
void appendNames(std::string_view block, std::vector<std::string>& names);

/// Replaces the lists by the cast table's actors and their roles. `shorten` is applied to each
/// trimmed role, which is then trimmed again. An actor without a role has no entry in
/// `roles`. A row that is too short to have a name throws std::out_of_range.
void readCast(std::string_view page, std::vector<std::string>& names,
              std::vector<std::string>& roles, void (*shorten)(std::string& role) = nullptr);

/// Replaces the list by the page's genres.
void readGenres(std::string_view page, std::vector<std::string>& genres);

std::optional<std::string> userRatingOf(std::string_view page);

}  // namespace libquilp
