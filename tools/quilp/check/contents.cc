#include "check/contents.h"

#include "plugin/record_table.h"

namespace quilp {
namespace {

using libquilp::Element;
using libquilp::Request;
using libquilp::XMLNode;

void take(const Request& request, const XMLNode& element, const std::string& name,
          std::vector<Value>& values) {
  const char* text = request.plainText ? element.getText() : libquilp::firstClear(element);
  if (text != nullptr && *text != '\0') {
    values.push_back({name, text});
  }
}

void takeSong(const Request& request, const XMLNode& song, std::vector<Value>& values) {
  for (const Element& element : request.elements(request)) {
    const XMLNode one = song.getChildNode(element.name);
    take(request, one, element.name, values);
    one.forEachChild("Name", [&](const XMLNode& name) {
      take(request, name, element.name, values);
      name.forEachAttribute([&](const libquilp::XMLAttribute& attribute) {
        values.push_back({attribute.lpszName, attribute.lpszValue});
      });
    });
  }
}

}  // namespace

std::vector<XMLNode> resultsOf(const Request& request, const XMLNode& root) {
  if (request.entry == nullptr) {
    return {root};
  }
  std::vector<XMLNode> results;
  root.forEachChild(request.entry, [&](const XMLNode& entry) { results.push_back(entry); });
  return results;
}

std::vector<Value> valuesOf(const Request& request, const XMLNode& result) {
  std::vector<Value> values;
  if (request.plainText) {
    takeSong(request, result, values);
    return values;
  }
  const std::vector<Element> elements = request.elements(request);
  if (elements.empty()) {
    take(request, result, request.entry, values);
  }
  for (const Element& element : elements) {
    if (element.kind == Element::Kind::kText) {
      take(request, result.getChildNode(element.name), element.name, values);
      continue;
    }
    result.forEachChild(element.name, [&](const XMLNode& one) {
      if (element.kind == Element::Kind::kCast) {
        take(request, one.getChildNode("name"), "name", values);
        take(request, one.getChildNode("role"), "role", values);
      } else {
        take(request, one, element.name, values);
      }
    });
  }
  return values;
}

}  // namespace quilp
