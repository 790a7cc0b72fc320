#include "music/json.h"

#include <json/reader.h>

#include <exception>

#include "plugin/files.h"

namespace libquilp {
namespace {

// Some versions of JsonCpp mark their Reader as deprecated.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
/// Returns the reader's error message; no value on success.
std::optional<std::string> parse(const char* path, Json::Value& root) {
  Json::Reader reader;
  try {
    if (reader.parse(readFile(path).value_or(""), root, false)) {
      return {};
    }
    return reader.getFormattedErrorMessages();
  } catch (const std::exception& error) {  // nested too deep for the reader, or no memory
    return std::string(error.what()) + '\n';
  }
}
#pragma GCC diagnostic pop

}  // namespace

std::optional<Json::Value> readJson(const char* path, const Context& context) {
  Json::Value root;
  if (const auto messages = parse(path, root)) {
    context.tell("Failed to parse configuration\n" + *messages);
    return {};
  }
  return root;
}

const Json::Value& member(const Json::Value& value, const std::string& name) {
  return value.isObject() ? value[name] : Json::Value::nullSingleton();
}

const Json::Value& element(const Json::Value& value, Json::ArrayIndex i) {
  return value.isArray() ? value[i] : Json::Value::nullSingleton();
}

std::string text(const Json::Value& value) {
  return value.isString() ? value.asString() : std::string();
}

}  // namespace libquilp
