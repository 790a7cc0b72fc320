#pragma once

#include "libquilp.h"
#include "plugin/observer.h"
#include "plugin/records.h"

namespace libquilp {

/// The built-in search, for a percent-encoded keyword.
Found<velTVShow> searchShows(const char* keyword, int count, const Context& context);

}  // namespace libquilp
