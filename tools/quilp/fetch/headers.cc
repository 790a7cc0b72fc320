#include "fetch/headers.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace quilp {
namespace {

/// The value of "NAME: VALUE"; false for another name.
bool take(const std::string& line, const std::string& name, std::string& value) {
  if (strncasecmp(line.c_str(), (name + ':').c_str(), name.size() + 1) != 0) {
    return false;
  }
  const std::size_t start = line.find_first_not_of(" \t", name.size() + 1);
  value = start == std::string::npos ? "" : line.substr(start);
  return true;
}

}  // namespace

Headers readHeaders(const std::string& path) {
  std::ifstream file(path);
  Headers headers;
  std::string value;
  for (std::string line; std::getline(file, line);) {
    line.erase(line.find_last_not_of("\r \t") + 1);
    if (line.compare(0, 5, "HTTP/") == 0) {
      headers = {};
      const char* const status = line.c_str() + std::min(line.find(' '), line.size());
      headers.status = static_cast<int>(std::strtol(status, nullptr, 10));
    } else if (take(line, "ETag", value)) {
      headers.etag = value;
    } else if (take(line, "Last-Modified", value)) {
      headers.modified = value;
    } else if (take(line, "Content-Length", value) && headers.total == 0) {
      headers.total = std::strtoull(value.c_str(), nullptr, 10);
    } else if (take(line, "Content-Range", value)) {
      const std::size_t slash = value.find('/');
      headers.total =
          slash == std::string::npos ? 0 : std::strtoull(value.c_str() + slash + 1, nullptr, 10);
    }
  }
  return headers;
}

}  // namespace quilp
