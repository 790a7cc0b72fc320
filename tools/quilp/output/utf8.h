#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/utf8.h"

namespace quilp {

using libquilp::validUtf8;

/// The bytes as UTF-8, with "?" for each control character, so that it stays on one line.
std::string lineText(std::string_view bytes);

/// The width of a text of lineText, in columns of a terminal.
std::size_t columnsOf(std::string_view text);

/// A text of lineText; one that is wider than `columns` has "…" for its middle.
std::string fitted(const std::string& text, std::size_t columns);

}  // namespace quilp
