#pragma once

#include <string_view>

#include "libquilp.h"
#include "plugin/observer.h"
#include "plugin/records.h"

namespace libquilp {

/// The built-in search, for a percent-encoded keyword.
Found<velMovie_> searchMovies(const char* keyword, int count, const Context& context);

/// The same among the site's alternate titles.
Found<velMovie_> searchAlternateTitles(const char* keyword, int count, const Context& context);

/// The records of a page of the alternate search.
RecordArray<velMovie_> readAlternatePage(std::string_view page, int count);

}  // namespace libquilp
