#pragma once

#include <json/value.h>

#include <optional>
#include <string>

#include "plugin/observer.h"

// Documents of the artwork service. A value of an unexpected type counts as missing. Nothing
// throws.

namespace libquilp {

/// Parses the document in a file; on failure returns no value and reports to `context`.
std::optional<Json::Value> readJson(const char* path, const Context& context);

/// A member of an object; null when there is none, or when `value` is no object.
const Json::Value& member(const Json::Value& value, const std::string& name);

/// An element of an array; null when there is none, or when `value` is no array.
const Json::Value& element(const Json::Value& value, Json::ArrayIndex i);

/// A string; empty when `value` is none.
std::string text(const Json::Value& value);

}  // namespace libquilp
