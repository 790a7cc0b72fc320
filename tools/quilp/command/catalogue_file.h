#pragma once

#include "kit/settings.h"
#include "platform/stock_add_ons.h"

namespace quilp {

using kit::catalogueFile;

/// What the owner of the data sets wants to be said beside their data.
inline const char* catalogueAttribution() { return stockAddOn("catalogue")->attribution; }

}  // namespace quilp
