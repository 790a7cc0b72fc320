#pragma once

#include <string>
#include <vector>

#include "check/report.h"
#include "lookup/request.h"
#include "xml/xml_node.h"

namespace quilp {

/// An add-on's document, as the library reads it.
struct Document {
  const Clause* fault = nullptr;  // why there is none; null when there is one
  std::string found;
  libquilp::XMLNode root;
  std::vector<libquilp::XMLNode> results;

  /// All that the library takes from it, in its order.
  std::vector<std::string> values(const libquilp::Request& request) const;

  /// The first result's element; empty when it has none.
  std::string first(const char* element) const;
};

/// Opens with the library's own reader.
Document openDocument(const libquilp::Request& request, const char* path);

/// Judges the clauses that `fault` can name, and the encoding.
void judgeOpening(const Document& document, const char* path, Report& report);

/// Judges what is inside a document that could be opened.
void judgeContents(const libquilp::Request& request, const Document& document, const char* path,
                   Report& report);

}  // namespace quilp
