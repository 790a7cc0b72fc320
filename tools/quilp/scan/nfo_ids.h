#pragma once

#include <string>

#include "scan/item.h"

namespace quilp {

/// The identifier that the NFO file of an item has, such as "tt0000001"; empty for none. Of an
/// episode it is the show's.
std::string idFromNfo(const MediaItem& item);

}  // namespace quilp
