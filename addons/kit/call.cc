#include "call.h"

#include <cstdlib>
#include <cstring>

namespace quilp::kit {
namespace {

int toNumber(const char* option, const std::string& text) {
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || value < -1000000000 || value > 1000000000) {
    throw WrongCall(std::string(option) + ": \"" + text + "\" is no number");
  }
  return static_cast<int>(value);
}

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

Call readCall(int argc, char** argv) {
  if (argc < 2) {
    throw WrongCall("no verb; see quilp-addon(7)");
  }
  Call call;
  call.verb = argv[1];
  bool hasSeason = false;
  for (int i = 2; i < argc; i += 2) {
    const char* const option = argv[i];
    if (i + 1 == argc) {
      throw WrongCall(std::string(option) + ": no value");
    }
    const std::string value = argv[i + 1];
    switch (std::strlen(option) == 2 && option[0] == '-' ? option[1] : '\0') {
      case 't':
        call.keyword = value;
        break;
      case 'i':
        call.id = value;
        break;
      case 'b':
        call.album = value;
        break;
      case 'a':
        call.artist = value;
        break;
      case 'f':
        call.path = value;
        break;
      case 'l':
        call.language = value;
        break;
      case 'o':
        call.output = value;
        break;
      case 'n':
        call.count = toNumber(option, value);
        break;
      case 's':
        call.season = toNumber(option, value);
        hasSeason = true;
        break;
      case 'e':
        call.episode = toNumber(option, value);
        call.hasEpisode = true;
        break;
      default:
        throw WrongCall(std::string("no option \"") + option + '"');
    }
  }
  call.hasEpisode = call.hasEpisode && hasSeason;
  if (call.output.empty()) {
    throw WrongCall("-o: no file for the document");
  }
  call.name = environment("QUILP_NAME");
  call.year = static_cast<int>(std::strtol(environment("QUILP_YEAR").c_str(), nullptr, 10));
  if (call.language.empty()) {
    call.language = environment("QUILP_LANGUAGE");
  }
  return call;
}

}  // namespace quilp::kit
