#include "check/question.h"

#include "libquilp.h"

namespace quilp {
namespace {

constexpr std::size_t kText = 2;  // after the verb and the option

}  // namespace

bool Question::hasKeyword() const {
  return request.options.begin()->value == libquilp::Value::kKeyword;
}

const std::string& Question::text() const { return arguments[kText]; }

std::vector<std::string> Question::argumentsWith(const std::string& text) const {
  std::vector<std::string> changed = arguments;
  changed[kText] = hasKeyword() ? ProcessKeyword(text.c_str(), 0) : text;
  return changed;
}

}  // namespace quilp
