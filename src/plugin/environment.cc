#include "plugin/environment.h"

#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace libquilp {
namespace {

constexpr std::string_view kOwn[] = {kNameVariable, kYearVariable, kLanguageVariable};

bool isOwn(std::string_view entry) {
  return std::any_of(std::begin(kOwn), std::end(kOwn), [entry](std::string_view name) {
    return entry.substr(0, name.size()) == name && entry.substr(name.size(), 1) == "=";
  });
}

}  // namespace

Environment::Environment(const Variables& own) {
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    if (!isOwn(*entry)) {
      entries_.push_back(*entry);
    }
  }
  own_.reserve(own.size());
  for (const auto& [name, value] : own) {
    own_.push_back(name);
    own_.back().append("=").append(value);
    entries_.push_back(own_.back().data());
  }
  entries_.push_back(nullptr);
}

}  // namespace libquilp
