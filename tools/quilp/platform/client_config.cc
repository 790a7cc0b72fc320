#include "platform/client_config.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>

#include "platform.h"
#include "plugin/files.h"

namespace quilp {
namespace {

constexpr char kHome[] = "CURL_HOME";

/// The user's own, from where the client would have it.
std::string usersConfig() {
  constexpr const char* kPlaces[][2] = {{kHome, "/.curlrc"},
                                        {"XDG_CONFIG_HOME", "/.curlrc"},
                                        {"XDG_CONFIG_HOME", "/curlrc"},
                                        {"HOME", "/.curlrc"},
                                        {"HOME", "/.config/curlrc"}};
  for (const auto& [variable, name] : kPlaces) {
    const char* folder = std::getenv(variable);
    if (folder == nullptr) {
      continue;
    }
    if (const auto text = libquilp::readFile((std::string(folder) + name).c_str())) {
      return *text + '\n';
    }
  }
  return {};
}

}  // namespace

bool hasClient() { return faccessat(AT_FDCWD, libquilp::kHttpClient, X_OK, AT_EACCESS) == 0; }

int clientVersion() {
  if (!hasClient()) {
    return 0;
  }
  const std::string command = std::string(libquilp::kHttpClient) + " --version 2>/dev/null";
  std::FILE* output = popen(command.c_str(), "re");
  if (output == nullptr) {
    return 0;
  }
  const std::string text = libquilp::readLines(output);
  pclose(output);
  const std::size_t number = text.find_first_of("0123456789");
  if (number == std::string::npos) {
    return 0;
  }
  char* rest = nullptr;
  const long major = std::strtol(text.c_str() + number, &rest, 10);
  const long minor = *rest == '.' ? std::strtol(rest + 1, nullptr, 10) : 0;
  return static_cast<int>(major * 1000 + minor);
}

ClientConfig::ClientConfig(const std::string& lines) {
  char folder[] = "/tmp/quilp.XXXXXX";
  if (mkdtemp(folder) == nullptr) {
    return;
  }
  file_ = std::string(folder) + "/.curlrc";
  std::ofstream file(file_);
  file << usersConfig() << lines;
  file.close();
  if (!file) {
    unlink(file_.c_str());
    rmdir(folder);
    return;
  }
  folder_ = folder;
  if (const char* home = std::getenv(kHome)) {
    home_ = home;
    hadHome_ = true;
  }
  setenv(kHome, folder, 1);
}

ClientConfig::~ClientConfig() {
  if (!inUse()) {
    return;
  }
  if (hadHome_) {
    setenv(kHome, home_.c_str(), 1);
  } else {
    unsetenv(kHome);
  }
  unlink(file_.c_str());
  rmdir(folder_.c_str());
}

}  // namespace quilp
