#include "command/stock_operand.h"

#include "usage/suggestion.h"

namespace quilp {
namespace {

/// What the help and completion call a stock add-on: "catalogue|…".
std::string shape() {
  std::string names;
  for (const StockAddOn& addOn : stockAddOns()) {
    names += (names.empty() ? "" : "|") + std::string(addOn.name);
  }
  return names;
}

}  // namespace

Operand stockOperand(std::vector<std::string>& names) {
  return {"NAME",
          "A stock add-on: " + shape(),
          [&names](const std::string& name) { names.push_back(name); },
          true,
          true,
          shape()};
}

std::vector<const StockAddOn*> stockAddOnsOf(const std::vector<std::string>& names) {
  std::vector<const StockAddOn*> addOns;
  addOns.reserve(names.size());
  for (const std::string& name : names) {
    addOns.push_back(stockAddOn(name));
    if (addOns.back() == nullptr) {
      std::vector<std::string> known;
      for (const StockAddOn& addOn : stockAddOns()) {
        known.emplace_back(addOn.name);
      }
      throw WrongUsage(noSuch("stock add-on", name, known));
    }
  }
  return addOns;
}

}  // namespace quilp
