#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "plugin/observer.h"
#include "text/cutter.h"

namespace libquilp {

/// Address of a title page; `reference` is the value of its query parameter ref_.
std::string titleAddress(const std::string& id, const char* reference);

/// Address of the poster on a title page, as it stands.
Cut posterOf(std::string_view page);

/// The short outline of a title page, entities not decoded.
struct Outline {
  std::string text;
  bool isOnSummaryPage = false;  // the title page refers to the plot-summary page
};
Outline imdbExtractOutline(std::string_view page);

/// The paragraph of a plot-summary page; empty when there is none.
std::string plotSummaryOf(std::string_view page);

/// Address of the plot-summary page of a title.
std::string summaryAddress(const char* id);

/// An outline as people read it; none when it is empty or blank.
std::optional<std::string> decodedOutline(std::string_view text);

/// The same, of the plot-summary page.
std::optional<std::string> outlineOfSummaryPage(std::string_view page);

/// Fetches the plot-summary page of a title and cuts it.
std::string imdbGetPlotSummary(const char* id, const Context& context);

/// The outline of a title page, decoded; none when it is empty or blank. Fetches the plot-summary
/// page where the title page refers to it.
std::optional<std::string> fetchOutline(std::string_view page, const char* id,
                                        const Context& context);

}  // namespace libquilp
