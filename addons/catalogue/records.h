#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "search.h"
#include "store.h"
#include "title.h"

namespace quilp::catalogue {

/// An element of a result: a text, or elements of its own.
struct Element {
  std::string name;
  std::string text{};
  std::vector<Element> elements{};
};
using Elements = std::vector<Element>;

/// Results as an add-on's documents have them. An unknown value has no element. Titles are in the
/// language where the catalogue knows one: "fr"; empty for the title itself. A hit also has what
/// programs need that match files: the original title, the name that was found, and the votes.
Elements movieHit(const Title& title, std::string_view language, std::string_view name);
Elements showHit(const Title& title, std::string_view language, std::string_view name);
Elements movie(Store& store, const Title& title, std::string_view language);
Elements show(Store& store, const Title& title, std::string_view language);
Elements episode(const Title& show, const Episode& episode);

}  // namespace quilp::catalogue
