#pragma once

#include <json/value.h>

#include <string_view>

namespace quilp {

/// A string; null for an empty one. JSON is UTF-8: a byte that is no part of it becomes U+FFFD.
Json::Value jsonText(std::string_view bytes);

/// Prints a value, a line feed behind it; false when it could not be written.
bool printJson(const Json::Value& value);

/// Prints a value on a line of its own; what is printed may stay in the stream's buffer.
void printJsonLine(const Json::Value& value);

}  // namespace quilp
