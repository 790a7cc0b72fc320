#include "scan/memory.h"

#include <json/reader.h>
#include <json/writer.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "output/utf8.h"

namespace quilp {
namespace {

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

std::string keyOf(const std::string& file) {
  return std::filesystem::absolute(file).lexically_normal().native();
}

/// Bytes that are not UTF-8 would change in a text of JSON: they are kept as numbers.
Json::Value bytesOf(const std::string& text) {
  Json::Value bytes(Json::arrayValue);
  for (const char c : text) {
    bytes.append(static_cast<int>(static_cast<unsigned char>(c)));
  }
  return bytes;
}

std::string textOf(const Json::Value& bytes) {
  if (!bytes.isArray()) {
    return bytes.asString();
  }
  std::string text;
  for (const Json::Value& byte : bytes) {
    text += static_cast<char>(byte.asInt());
  }
  return text;
}

std::string lineOf(const Json::Value& value) {
  Json::StreamWriterBuilder writer;
  writer["indentation"] = "";
  return Json::writeString(writer, value);
}

}  // namespace

Memory::Memory(const std::string& path, const std::string& settings) {
  if (path.empty()) {
    return;
  }
  file_.reset(std::fopen(path.c_str(), "ae"));
  if (!file_) {
    fail("cannot open " + path);
  }
  Json::Value heading;
  heading["quilp scan"] = settings;
  read(path, lineOf(heading));
}

void Memory::read(const std::string& path, const std::string& heading) {
  std::ifstream lines(path);
  std::string line;
  if (!lines) {
    fail("cannot read " + path);
  }
  std::getline(lines, line);
  if (lines.eof() && heading.compare(0, line.size(), line) == 0) {  // empty, or cut off here
    std::fprintf(file_.get(), "%s\n", heading.c_str() + line.size());
    return;
  }
  if (line != heading) {
    throw std::runtime_error(path + " belongs to another scan, or to none");
  }
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  bool whole = !lines.eof();
  while (std::getline(lines, line)) {
    whole = !lines.eof();
    Json::Value value;
    try {  // a line that was cut off is no JSON
      if (reader->parse(line.data(), line.data() + line.size(), &value, nullptr)) {
        ScanRow row = rowOf(value);
        row.file = textOf(value["file"]);
        rows_[textOf(value["key"])] = std::move(row);
      }
    } catch (const Json::Exception&) {
      continue;
    }
  }
  if (!whole) {
    std::fputc('\n', file_.get());
  }
}

const ScanRow* Memory::find(const std::string& file) const {
  const auto found = rows_.empty() ? rows_.end() : rows_.find(keyOf(file));
  return found != rows_.end() ? &found->second : nullptr;
}

void Memory::add(const ScanRow& row) {
  if (!file_ || row.failed) {
    return;
  }
  Json::Value value = jsonOf(row);
  const std::string key = keyOf(row.file);
  const auto kept = [](const std::string& text) {
    return validUtf8(text) == text ? Json::Value(text) : bytesOf(text);
  };
  value["file"] = kept(row.file);
  value["key"] = kept(key);
  if (std::fprintf(file_.get(), "%s\n", lineOf(value).c_str()) < 0 ||
      std::fflush(file_.get()) != 0) {
    fail("cannot write what a scan can be resumed with");
  }
}

}  // namespace quilp
