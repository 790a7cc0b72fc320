#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quilp::chain {

/// An element of an add-on's document, with a value or with elements.
struct Element {
  std::string name;  // in lower case
  std::string text{};
  std::vector<Element> elements{};
};
using Elements = std::vector<Element>;

/// The value of the first element of that name; empty if there is none.
const std::string& valueOf(const Elements& elements, const std::string& name);

/// What is in the root element of that name. Nothing if the file is no such document.
std::optional<Elements> readDocument(const std::string& path, const std::string& root);

}  // namespace quilp::chain
