#pragma once

#include <string>

namespace quilp {

/// The client is there and can be executed.
bool hasClient();

/// The client's version as one number, 7.88 as 7088; 0 when it does not tell.
int clientVersion();

/// As long as it lives, the client reads a configuration of our own: the user's with lines added.
class ClientConfig {
 public:
  explicit ClientConfig(const std::string& lines);
  ~ClientConfig();
  ClientConfig(const ClientConfig&) = delete;
  ClientConfig& operator=(const ClientConfig&) = delete;

  /// False where there was no place for it: the client reads the user's then.
  bool inUse() const { return !folder_.empty(); }

 private:
  std::string folder_;
  std::string file_;
  std::string home_;  // what CURL_HOME was
  bool hadHome_ = false;
};

}  // namespace quilp
