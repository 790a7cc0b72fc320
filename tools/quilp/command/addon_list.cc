#include <json/value.h>

#include <algorithm>
#include <iostream>
#include <string>

#include "command/commands.h"
#include "command/options.h"
#include "output/exit_status.h"
#include "output/json_output.h"
#include "output/table.h"
#include "platform.h"
#include "platform/registry_file.h"
#include "platform/registry_view.h"
#include "platform/stock_add_ons.h"

namespace quilp {
namespace {

using libquilp::RegistrySection;

std::string yesNo(bool value) { return value ? "yes" : "no"; }

std::string labelOf(const RegistrySection* section) {
  return section != nullptr ? '[' + section->name + ']' : "built-in";
}

Json::Value jsonOf(const RegistryView& registry, const RegistrySection& section) {
  Json::Value value;
  value["name"] = jsonText(section.name);
  value["class"] = jsonText(section.ownerClass.value_or(""));
  value["type"] = jsonText(section.type.value_or(""));
  value["enabled"] = section.isEnabled();
  value["shell"] = jsonText(section.shell.value_or(""));
  value["executable"] = RegistryView::defect(section).empty();
  value["notForRecords"] = jsonText(registry.obstacle(section, Use::kRecords));
  value["notForPrint"] = jsonText(registry.obstacle(section, Use::kPrint));
  return value;
}

Json::Value jsonOfServing(const RegistrySection* section) {
  return section != nullptr ? jsonText(section->name) : Json::Value();
}

bool isEnabled(const RegistryView& registry, const StockAddOn& addOn) {
  const auto& sections = registry.sections();
  return std::any_of(sections.begin(), sections.end(), [&addOn](const RegistrySection& section) {
    return section.isEnabled() && isOf(addOn, section);
  });
}

Json::Value jsonOf(const RegistryView& registry, const StockAddOn& addOn) {
  Json::Value value;
  value["name"] = addOn.name;
  for (const std::string& type : addOn.typeList()) {
    value["types"].append(type);
  }
  value["does"] = addOn.does;
  value["asks"] = addOn.asks;
  value["key"] = addOn.key;
  value["program"] = jsonText(addOn.program());
  value["installed"] = addOn.isInstalled();
  value["enabled"] = isEnabled(registry, addOn);
  value["attribution"] = addOn.attribution;
  return value;
}

bool printListAsJson(const RegistryView& registry) {
  Json::Value list;
  list["file"] = libquilp::kRegistryFile;
  list["problem"] = jsonText(registry.problem());
  list["sections"] = Json::Value(Json::arrayValue);
  for (const RegistrySection& section : registry.sections()) {
    list["sections"].append(jsonOf(registry, section));
  }
  for (const Media& media : libquilp::kAllMedia) {
    Json::Value& entry = list["media"][media.type];
    entry["records"] = jsonOfServing(registry.serving(media, Use::kRecords));
    if (media.printing != libquilp::Printing::kNone) {
      entry["print"] = jsonOfServing(registry.serving(media, Use::kPrint));
    }
  }
  list["stock"] = Json::Value(Json::arrayValue);
  for (const StockAddOn& addOn : stockAddOns()) {
    list["stock"].append(jsonOf(registry, addOn));
  }
  return printJson(list);
}

/// Returns whether there are any.
bool printObstacles(const RegistryView& registry, const RegistrySection& section) {
  const std::string label = '[' + section.name + ']';
  const std::string records = registry.obstacle(section, Use::kRecords);
  const std::string print = registry.obstacle(section, Use::kPrint);
  if (records == print) {
    printLine(label, records);
  } else {
    printLine(label, records.empty() ? "" : "not for records: " + records);
    printLine(label, print.empty() ? "" : "not for print: " + print);
  }
  const bool isAsked = records.empty() || print.empty();
  const std::string defect = isAsked ? RegistryView::defect(section) : "";
  printLine(label, defect);
  return !records.empty() || !print.empty() || !defect.empty();
}

void printStock(const RegistryView& registry) {
  Table table({"stock add-on", "serves", "installed", "enabled", "what it does", "asks", "needs"});
  for (const StockAddOn& addOn : stockAddOns()) {
    table.addRow({addOn.name, addOn.types, yesNo(addOn.isInstalled()),
                  yesNo(isEnabled(registry, addOn)), addOn.does, addOn.asks, addOn.key});
  }
  table.print();
  std::cout << '\n';
  for (const StockAddOn& addOn : stockAddOns()) {
    printLine(addOn.name, addOn.attribution);
  }
}

bool printListAsTable(const RegistryView& registry) {
  if (!registry.problem().empty()) {
    std::cout << libquilp::kRegistryFile << ' ' << registry.problem() << '\n';
  } else {
    Table sections({"section", "class", "type", "enabled", "shell", "executable"});
    for (const RegistrySection& section : registry.sections()) {
      sections.addRow({section.name, section.ownerClass.value_or(""), section.type.value_or(""),
                       yesNo(section.isEnabled()), section.shell.value_or(""),
                       yesNo(RegistryView::defect(section).empty())});
    }
    sections.print();
  }
  std::cout << '\n';
  Table uses({"media", "records", "print"});
  for (const Media& media : libquilp::kAllMedia) {
    const bool prints = media.printing != libquilp::Printing::kNone;
    uses.addRow({media.type, labelOf(registry.serving(media, Use::kRecords)),
                 prints ? labelOf(registry.serving(media, Use::kPrint)) : "-"});
  }
  uses.print();
  std::cout << '\n';
  bool hasObstacles = false;
  for (const RegistrySection& section : registry.sections()) {
    hasObstacles = printObstacles(registry, section) || hasObstacles;
  }
  std::cout << (hasObstacles ? "\n" : "");
  printStock(registry);
  return static_cast<bool>(std::cout.flush());
}

int list(Format format) {
  const RegistryView& registry = RegistryView::get();
  const bool printed =
      format == Format::kJson ? printListAsJson(registry) : printListAsTable(registry);
  return printed && !registry.sections().empty() ? 0 : kNothingFound;
}

}  // namespace

void addAddonList(Command& addon) {
  static Format format;
  Command& command = addon.add(
      "list", "List the registry's add-ons, which of them are asked, and the stock add-ons");
  addFormat(command, format, {Format::kTable, Format::kJson});
  command.run = [] { return list(format); };
}

}  // namespace quilp
