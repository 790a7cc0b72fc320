#include "check/hostile.h"

namespace quilp {
namespace {

constexpr std::size_t kLong = 4096;

std::string longValue() {
  std::string value;
  while (value.size() < kLong) {
    value += "word ";
  }
  return value + "end";
}

std::string touching(const std::string& before, const std::string& after) {
  return "x" + before + "touch " + kInjected + after;
}

}  // namespace

const std::vector<Hostile>& hostileValues() {
  static const std::vector<Hostile> values = {
      {{kDash, "a leading \"-\" is part of the value"}, {"-zqxjvw"}},
      {{"hostile-quotes", "quotes and what a shell would run are part of the value"},
       {touching(";", ";"), touching("';", ";'"), touching("\";", ";\""), touching("`", "`")}},
      {{"hostile-markup", "markup does not spoil the document"}, {"</title>]]>&<b>\"'"}},
      {{"hostile-utf8", "any character is taken"}, {"Zoë 風雨歸人 🎬 ﷽"}},
      {{"hostile-bytes", "bytes that are no UTF-8 do not spoil the document"},
       {"caf\xe9 \xff\xfe"}},
      {{"hostile-empty", "an empty value is taken"}, {""}},
      {{"hostile-long", "4 KB are taken"}, {longValue()}},
  };
  return values;
}

}  // namespace quilp
