#pragma once

#include <json/value.h>

#include <cstddef>
#include <string>
#include <vector>

namespace quilp::kit {

/// A value in the answer of a service. What is missing, null or of another type is empty, so that a
/// reader need not ask before it looks. Belongs to an answer, and must not outlive it.
class Json {
 public:
  explicit Json(const ::Json::Value& value) : value_(&value) {}

  bool isObject() const { return value_->isObject(); }

  /// A member of an object.
  Json operator[](const std::string& name) const;

  /// The elements of an array.
  std::vector<Json> list() const;

  /// The members of an object, without their names.
  std::vector<Json> members() const;

  /// A string without blanks at its ends, or a whole number as a string.
  std::string text() const;

  /// A string as it is.
  std::string untrimmed() const;

  bool isTrue() const;

  /// A number, also one that is written as a string; 0 for none.
  double number() const;

  /// The values text() of the member `name` of all elements, without those that are empty.
  std::vector<std::string> texts(const std::string& name) const;

 private:
  const ::Json::Value* value_;
};

/// The answer of a service.
class JsonAnswer {
 public:
  /// Throws std::runtime_error if the text is no JSON, or is built to exhaust this program.
  explicit JsonAnswer(const std::string& text);

  Json root() const { return Json(root_); }

 private:
  ::Json::Value root_;
};

}  // namespace quilp::kit
