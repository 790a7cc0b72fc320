#pragma once

#include <string>

namespace quilp {

struct Picture {
  std::string bytes{};      // empty where there is none
  std::string extension{};  // ".jpg", ".png" or ".webp", by its first bytes
  std::string failure{};    // why there is none
};

/// Fetches a picture, by the cache and the pace that all add-ons of the machine share.
Picture fetchPicture(const std::string& address);

}  // namespace quilp
