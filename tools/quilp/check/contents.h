#pragma once

#include <string>
#include <vector>

#include "lookup/request.h"
#include "xml/xml_node.h"

namespace quilp {

/// A value that the library takes from a document.
struct Value {
  std::string name;
  std::string text;
};

/// The elements of the results; the root where it is the one result.
std::vector<libquilp::XMLNode> resultsOf(const libquilp::Request& request,
                                         const libquilp::XMLNode& root);

/// What the library takes from a result.
std::vector<Value> valuesOf(const libquilp::Request& request, const libquilp::XMLNode& result);

}  // namespace quilp
