#include "scan/pictures.h"

#include <string_view>

#include "kit/http.h"
#include "kit/settings.h"

namespace quilp {
namespace {

constexpr int kRequests = 20;  // in a second, of one host
constexpr int kFreshFor = 30 * 24 * 3600;

std::string extensionOf(std::string_view bytes) {
  if (bytes.substr(0, 3) == "\xFF\xD8\xFF") {
    return ".jpg";
  }
  if (bytes.substr(0, 4) == "\x89PNG") {
    return ".png";
  }
  return bytes.substr(0, 4) == "RIFF" && bytes.substr(8, 4) == "WEBP" ? ".webp" : "";
}

}  // namespace

Picture fetchPicture(const std::string& address) {
  const std::size_t scheme = address.find("://");
  const std::size_t path = scheme == std::string::npos ? scheme : address.find('/', scheme + 3);
  if (path == std::string::npos) {
    return {"", "", "\"" + address + "\" is no address"};
  }
  const std::string base = address.substr(0, path);
  Picture picture;
  try {
    kit::Http http(kit::Settings(), {"pictures", base.c_str(), kRequests, 1, kFreshFor});
    kit::HttpRequest request;
    request.path = address.substr(path);
    kit::HttpAnswer answer = http.get(request);
    picture.extension = extensionOf(answer.body);
    if (!answer.isFound || picture.extension.empty()) {
      picture.failure = answer.isFound ? address + " is no picture" : address + " is gone";
    } else {
      picture.bytes = std::move(answer.body);
    }
  } catch (const std::runtime_error& error) {
    picture.failure = error.what();
  }
  return picture;
}

}  // namespace quilp
