#pragma once

#include <string>
#include <string_view>

#include "libquilp.h"
#include "plugin/observer.h"
#include "plugin/records.h"
#include "text/cutter.h"

namespace libquilp {

/// Fields of a combined page that are on other pages.
struct MovieLinks {
  bool plotSummary = false;  // the plot is on the plot-summary page
  Cut photoPath;             // of the page that holds the poster
};

/// Fills the record from a title's combined page and returns what must be fetched for the rest.
/// Throws std::out_of_range for a plot section without a closing link.
MovieLinks readCombinedPage(std::string_view page, const char* id, velMovieInfo_& info);

/// Address of the poster on a photo page.
Cut primaryImageOf(std::string_view page);

/// The built-in scraper. Requires null text fields. If the page cannot be fetched, the record stays
/// untouched. The outcome has curl's exit status. Throws like readCombinedPage.
Outcome fetchMovie(const char* id, const Context& context, velMovieInfo_& info);

}  // namespace libquilp
