#pragma once

#include <json/value.h>

#include <string_view>

namespace quilp {

/// A string, or null for an empty one. A byte that is not UTF-8 becomes U+FFFD.
Json::Value jsonText(std::string_view bytes);

/// Prints a value and a line feed. Returns false when standard output cannot be written.
bool printJson(const Json::Value& value);

/// Prints a value on a line of its own; what is printed may stay in the stream's buffer.
void printJsonLine(const Json::Value& value);

}  // namespace quilp
