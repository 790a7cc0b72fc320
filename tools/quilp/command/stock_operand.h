#pragma once

#include <string>
#include <vector>

#include "platform/stock_add_ons.h"
#include "usage/command.h"

namespace quilp {

/// The names of stock add-ons on a command line.
Operand stockOperand(std::vector<std::string>& names);

/// Throws WrongUsage for a name that is none of theirs.
std::vector<const StockAddOn*> stockAddOnsOf(const std::vector<std::string>& names);

}  // namespace quilp
