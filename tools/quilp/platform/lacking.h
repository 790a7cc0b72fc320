#pragma once

#include <string>

#include "platform/stock_add_ons.h"

namespace quilp {

/// What keeps an add-on from answering although it is enabled, in half a sentence; empty for
/// nothing. Throws std::runtime_error where the settings cannot be read.
std::string lackOf(const StockAddOn& addOn);

}  // namespace quilp
