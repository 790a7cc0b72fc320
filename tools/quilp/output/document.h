#pragma once

#include <json/value.h>

#include <string>

namespace quilp {

/// Whether any element or CDATA section of the document holds more than blanks.
bool holdsText(const std::string& document);

/// The document's entries as an array, or its one record as an object, with a member for each
/// element: null for an empty element, an array for an element that may be repeated. Throws
/// std::runtime_error when the document is not well-formed.
Json::Value jsonOfDocument(const std::string& document);

/// Prints the main columns of a list, or the values of a record, one a line. Returns false when
/// standard output cannot be written. Throws as jsonOfDocument does.
bool printAsTable(const std::string& document);

}  // namespace quilp
