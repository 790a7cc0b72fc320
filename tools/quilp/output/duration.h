#pragma once

#include <cmath>
#include <string>

namespace quilp {

/// "2:05".
inline std::string minutesAndSeconds(double seconds) {
  const auto whole = std::lround(seconds);
  const std::string rest = std::to_string(whole % 60);
  return std::to_string(whole / 60) + ':' + (rest.size() < 2 ? "0" : "") + rest;
}

}  // namespace quilp
