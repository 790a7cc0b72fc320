#pragma once

#include "kit/settings.h"

namespace quilp {

using kit::catalogueFile;

/// What the owner of the data sets wants to be said beside their data.
inline constexpr char kCatalogueAttribution[] =
    "Information courtesy of IMDb (https://www.imdb.com). Used with permission.";

}  // namespace quilp
