#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "text/cutter.h"

namespace libquilp {

/// Address of a title page; `reference` is the link that is said to have led there.
std::string titleAddress(const std::string& id, const char* reference);

/// Address of the poster on a title page, as it stands.
Cut posterOf(std::string_view page);

/// The plot-summary page's paragraph; empty when there is none. The pipe it was read from stays
/// open when the routine returns (see fetchLeavingPipe).
std::string imdbGetPlotSummary(const char* id);

/// The short outline of a title page, entities not decoded; empty when there is none. Takes the
/// plot summary where the page refers to it.
std::string imdbExtractOutline(const std::string& page, const char* id);

/// The same, decoded; none when it is empty or blank.
std::optional<std::string> decodedOutline(const std::string& page, const char* id);

}  // namespace libquilp
