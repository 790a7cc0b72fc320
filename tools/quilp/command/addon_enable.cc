#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "command/commands.h"
#include "command/stock_operand.h"
#include "lookup/request.h"
#include "output/exit_status.h"
#include "output/message.h"
#include "output/table.h"
#include "platform/lacking.h"
#include "platform/registry_file.h"

namespace quilp {
namespace {

using Names = std::vector<std::string>;

/// For each kind of media, the section that is asked, and those that are enabled in vain.
void report(const RegistryFile& registry) {
  for (const libquilp::Media& media : libquilp::kAllMedia) {
    const libquilp::RegistrySection* const asked =
        libquilp::firstEnabledSection(registry.sections(), media.type, true);
    printLine(media.type,
              asked == nullptr ? "built-in" : '[' + asked->name + "] " + asked->shell.value_or(""));
    for (const libquilp::RegistrySection& section : registry.sections()) {
      if (asked != nullptr && section.name != asked->name && section.type == media.type &&
          section.isEnabled() && section.isOwnClass()) {
        printLine("", '[' + section.name + "] is enabled, too, but [" + asked->name +
                          "] comes first: only that one is asked");
      }
    }
  }
}

int enable(const Names& names) {
  const std::vector<const StockAddOn*> addOns = stockAddOnsOf(names);
  RegistryFile registry;
  // Each one goes before those that are there.
  for (auto addOn = addOns.rbegin(); addOn != addOns.rend(); ++addOn) {
    registry.enable(**addOn);
  }
  registry.save();
  report(registry);
  for (const StockAddOn* const addOn : addOns) {
    if (*addOn->attribution != '\0') {
      printLine(addOn->name, addOn->attribution);
    }
    const std::string lack = lackOf(*addOn);
    tell(lack.empty() ? "" : std::string(addOn->name) + " cannot answer yet: " + lack);
  }
  return std::cout.flush() ? 0 : kNothingFound;
}

int disable(const Names& names) {
  const std::vector<const StockAddOn*> addOns = stockAddOnsOf(names);
  RegistryFile registry;
  for (const StockAddOn* const addOn : addOns) {
    registry.disable(*addOn);
  }
  registry.save();
  report(registry);
  return std::cout.flush() ? 0 : kNothingFound;
}

void add(Command& addon, const char* word, const char* summary, Names& names,
         int (*run)(const Names&)) {
  Command& command = addon.add(word, summary);
  command.operands.push_back(stockOperand(names));
  command.run = [&names, run] { return run(names); };
}

}  // namespace

void addAddonEnable(Command& addon) {
  static Names names;
  add(addon, "enable", "Register stock add-ons, so that they are asked first", names, enable);
}

void addAddonDisable(Command& addon) {
  static Names names;
  add(addon, "disable", "Disable stock add-ons in the registry", names, disable);
}

}  // namespace quilp
