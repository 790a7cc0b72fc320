#pragma once

#include <string_view>

#include "libquilp.h"
#include "text/cutter.h"

namespace libquilp {

/// Fills the record from a title's combined page and the photo page it leads to. Throws
/// std::out_of_range for a plot section without a closing link.
void readCombinedPage(std::string_view page, const char* id, velMovieInfo_& info);

/// Address of the poster on a photo page.
Cut primaryImageOf(std::string_view page);

}  // namespace libquilp
