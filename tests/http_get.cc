// http_get SECTION BASE PATH [NAME=VALUE...]: makes one request as an add-on does, and writes what
// comes of it. "key" as a value stands for the key of the settings.

#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "kit/http.h"

namespace {

int run(int argc, char** argv) {
  using namespace quilp::kit;
  const Settings settings;
  Http http(settings, {argv[1], argv[2], 10, 1});
  HttpRequest request;
  request.path = argv[3];
  for (int i = 4; i < argc; ++i) {
    const char* const sign = std::strchr(argv[i], '=');
    const std::string value = sign == nullptr ? "" : sign + 1;
    const std::string name(argv[i], std::strcspn(argv[i], "="));
    if (value == "key") {
      http.requireKey();
      request.secretQuery.emplace_back(name, http.key());
    } else {
      request.query.emplace_back(name, value);
    }
  }
  const HttpAnswer answer = http.get(request);
  std::printf("%s%s%s %zu\n%.200s\n", answer.isFound ? "found" : "nothing",
              answer.isCached ? " cached" : "", answer.isStale ? " stale" : "", answer.body.size(),
              answer.body.c_str());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return argc < 4 ? 2 : run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "http_get: %s\n", error.what());
    return 1;
  }
}
