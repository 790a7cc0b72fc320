#include "output/json_output.h"

#include <json/writer.h>

#include <iostream>
#include <memory>

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

void printJsonLine(const Json::Value& value) {
  static const std::unique_ptr<Json::StreamWriter> kWriter = [] {
    Json::StreamWriterBuilder builder;
    builder["emitUTF8"] = true;
    builder["indentation"] = "";
    return std::unique_ptr<Json::StreamWriter>(builder.newStreamWriter());
  }();
  kWriter->write(value, &std::cout);
  std::cout << '\n';
}

}  // namespace quilp
