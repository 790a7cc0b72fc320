#include "scan/overrides.h"

#include <fnmatch.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "ascii.h"

namespace quilp {
namespace {

std::string trimmed(std::string_view text) {
  while (!text.empty() && libquilp::isSpace(static_cast<unsigned char>(text.front()))) {
    text.remove_prefix(1);
  }
  while (!text.empty() && libquilp::isSpace(static_cast<unsigned char>(text.back()))) {
    text.remove_suffix(1);
  }
  return std::string(text);
}

bool fits(const std::string& pattern, const std::string& text) {
  return pattern == text || fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
}

}  // namespace

Overrides::Overrides(const std::string& path) {
  std::ifstream file(path);
  if (!file) {
    throw std::runtime_error("cannot read " + path);
  }
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    const std::string text = trimmed(line);
    if (text.empty() || text.front() == '#') {
      continue;
    }
    const std::size_t sign = text.rfind('=');  // a pattern may have some of its own
    const std::string id = sign == std::string::npos ? "" : trimmed(text.substr(sign + 1));
    const std::string pattern = trimmed(text.substr(0, sign));
    if (id.empty() || pattern.empty()) {
      throw std::runtime_error(path + ", line " + std::to_string(number) +
                               ": expected PATTERN = IDENTIFIER");
    }
    lines_.emplace_back(pattern, id);
  }
}

std::string Overrides::find(const std::string& file) const {
  const std::filesystem::path path(file);
  const std::string name = path.filename().native();
  const std::string absolute = std::filesystem::absolute(path).lexically_normal().native();
  std::string id;
  for (const auto& [pattern, of] : lines_) {
    if (fits(pattern, file) || fits(pattern, absolute) || fits(pattern, name)) {
      id = of;
    }
  }
  return id;
}

}  // namespace quilp
