#pragma once

#include <json/value.h>

#include <string>

namespace quilp {

/// Whether anything but blanks stands in an element or in a CDATA section of the document.
bool holdsText(const std::string& document);

/// The document's entries as an array, or its one record as an object, by the names of its
/// elements. Null stands for an empty element, an array for one that may be there several times.
/// Throws std::runtime_error when the document is not well-formed.
Json::Value jsonOfDocument(const std::string& document);

/// A list's main columns, a line for each entry; a record's values, a line for each. False when
/// they could not be written. Throws as jsonOfDocument does.
bool printAsTable(const std::string& document);

}  // namespace quilp
