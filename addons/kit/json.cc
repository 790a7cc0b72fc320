#include "json.h"

#include <json/reader.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace quilp::kit {
namespace {

constexpr int kDeepest = 64;

// A value takes a hundred bytes and more, as its text takes two.
constexpr std::ptrdiff_t kMostValues = 500000;

constexpr std::size_t kLongestNumber = 32;

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string trimmed(const std::string& text) {
  const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
  const auto end = std::find_if_not(text.rbegin(), text.rend(), isBlank).base();
  return begin < end ? std::string(begin, end) : std::string();
}

}  // namespace

Json Json::operator[](const std::string& name) const {
  return Json(value_->isObject() ? (*value_)[name] : ::Json::Value::nullSingleton());
}

std::vector<Json> Json::list() const {
  return value_->isArray() ? std::vector<Json>(value_->begin(), value_->end())
                           : std::vector<Json>();
}

std::vector<Json> Json::members() const {
  return value_->isObject() ? std::vector<Json>(value_->begin(), value_->end())
                            : std::vector<Json>();
}

std::string Json::text() const {
  if (value_->isString()) {
    return trimmed(value_->asString());
  }
  const bool isWhole = value_->type() == ::Json::intValue || value_->type() == ::Json::uintValue;
  return isWhole ? value_->asString() : "";
}

std::string Json::untrimmed() const { return value_->isString() ? value_->asString() : ""; }

bool Json::isTrue() const { return value_->isBool() && value_->asBool(); }

double Json::number() const {
  if (value_->isNumeric() && !value_->isBool()) {
    return value_->asDouble();
  }
  const std::string string = text();
  char* end = nullptr;
  const double number = string.size() > kLongestNumber ? 0 : std::strtod(string.c_str(), &end);
  return end != nullptr && *end == '\0' && std::isfinite(number) ? number : 0;
}

std::vector<std::string> Json::texts(const std::string& name) const {
  std::vector<std::string> texts;
  for (const Json& each : list()) {
    texts.push_back(each[name].text());
  }
  texts.erase(std::remove(texts.begin(), texts.end(), ""), texts.end());
  return texts;
}

JsonAnswer::JsonAnswer(const std::string& text) {
  const auto begins = [](char c) { return c == ',' || c == ':' || c == '[' || c == '{'; };
  if (std::count_if(text.begin(), text.end(), begins) > kMostValues) {
    throw std::runtime_error("the answer has too many values");
  }
  ::Json::CharReaderBuilder builder;
  builder["collectComments"] = false;
  builder["failIfExtra"] = true;
  builder["stackLimit"] = kDeepest;
  const std::unique_ptr<::Json::CharReader> reader(builder.newCharReader());
  bool isJson = false;
  try {
    isJson = reader->parse(text.data(), text.data() + text.size(), &root_, nullptr);
  } catch (const ::Json::Exception&) {  // nested too deep
    isJson = false;
  }
  if (!isJson) {
    throw std::runtime_error("the answer is no JSON");
  }
}

}  // namespace quilp::kit
