#include "element.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <pugixml.hpp>

#include "ascii.h"
#include "readable.h"
#include "xml/well_formed.h"

namespace quilp::chain {
namespace {

constexpr int kDepth = 2;  // of elements in elements: more has no document

std::string lower(const char* text) {
  std::string copy(text);
  std::transform(copy.begin(), copy.end(), copy.begin(), [](char c) {
    return static_cast<char>(libquilp::toLower(static_cast<unsigned char>(c)));
  });
  return copy;
}

/// A value is the first CDATA section.
Elements read(const pugi::xml_node& parent, int depth) {
  Elements elements;
  for (const pugi::xml_node& child : parent.children()) {
    if (child.type() != pugi::node_element) {
      continue;
    }
    Element element{lower(child.name())};
    for (const pugi::xml_node& part : child.children()) {
      if (part.type() == pugi::node_cdata) {
        element.text = part.value();
        break;
      }
    }
    if (depth > 0) {
      element.elements = read(child, depth - 1);
    }
    elements.push_back(std::move(element));
  }
  return elements;
}

}  // namespace

const std::string& valueOf(const Elements& elements, const std::string& name) {
  static const std::string none;
  for (const Element& element : elements) {
    if (element.name == name) {
      return element.text;
    }
  }
  return none;
}

std::optional<Elements> readDocument(const std::string& path, const std::string& root) {
  if (!libquilp::isReadable(path.c_str())) {
    return std::nullopt;
  }
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  pugi::xml_document document;
  if (text.empty() || libquilp::findXMLFault(text).reason != nullptr ||
      !document.load_buffer(text.data(), text.size())) {
    return std::nullopt;
  }
  const pugi::xml_node top = document.document_element();
  return lower(top.name()) == root ? std::optional(read(top, kDepth)) : std::nullopt;
}

}  // namespace quilp::chain
