#include "check/contents.h"

#include "plugin/record_table.h"

namespace quilp {
namespace {

using libquilp::XMLNode;

void take(const Layout& layout, const XMLNode& element, const std::string& name,
          std::vector<Value>& values) {
  const char* text = layout.plainText ? element.getText() : libquilp::firstClear(element);
  if (text != nullptr && *text != '\0') {
    values.push_back({name, text});
  }
}

void takeSong(const Layout& layout, const XMLNode& song, std::vector<Value>& values) {
  for (const Element& element : layout.elements) {
    take(layout, song.getChildNode(element.name.c_str()), element.name, values);
  }
  for (const char* list : {"Artist", "Genre"}) {
    song.getChildNode(list).forEachChild("Name", [&](const XMLNode& name) {
      take(layout, name, list, values);
      name.forEachAttribute([&](const libquilp::XMLAttribute& attribute) {
        values.push_back({attribute.lpszName, attribute.lpszValue});
      });
    });
  }
}

}  // namespace

std::vector<XMLNode> resultsOf(const Layout& layout, const XMLNode& root) {
  if (layout.entry == nullptr) {
    return {root};
  }
  std::vector<XMLNode> results;
  root.forEachChild(layout.entry, [&](const XMLNode& entry) { results.push_back(entry); });
  return results;
}

std::vector<Value> valuesOf(const Layout& layout, const XMLNode& result) {
  std::vector<Value> values;
  if (layout.plainText) {
    takeSong(layout, result, values);
    return values;
  }
  if (layout.elements.empty()) {
    take(layout, result, layout.entry, values);
  }
  for (const Element& element : layout.elements) {
    if (!element.repeated) {
      take(layout, result.getChildNode(element.name.c_str()), element.name, values);
      continue;
    }
    result.forEachChild(element.name.c_str(), [&](const XMLNode& one) {
      if (element.actors) {
        take(layout, one.getChildNode("name"), "name", values);
        take(layout, one.getChildNode("role"), "role", values);
      } else {
        take(layout, one, element.name, values);
      }
    });
  }
  return values;
}

}  // namespace quilp
