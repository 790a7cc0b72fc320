#include "output/json_output.h"

#include <json/writer.h>

#include <iostream>

#include "output/utf8.h"

namespace quilp {

Json::Value jsonText(std::string_view bytes) {
  return bytes.empty() ? Json::Value() : Json::Value(validUtf8(bytes));
}

bool printJson(const Json::Value& value) {
  Json::StreamWriterBuilder writer;
  writer["emitUTF8"] = true;
  writer["indentation"] = "  ";
  std::cout << Json::writeString(writer, value) << '\n';
  return static_cast<bool>(std::cout.flush());
}

}  // namespace quilp
