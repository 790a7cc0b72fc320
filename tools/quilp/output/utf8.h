#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quilp {

/// UTF-8 whatever the bytes are: each that is no part of a character becomes U+FFFD.
std::string validUtf8(std::string_view bytes);

/// The same on one line: a control character becomes "?".
std::string lineText(std::string_view bytes);

/// How many columns of a terminal a text of lineText takes.
std::size_t columnsOf(std::string_view text);

/// A text of lineText, or as much of its start and its end as `columns` hold with "…" between.
std::string fitted(const std::string& text, std::size_t columns);

}  // namespace quilp
