#pragma once

#include <chrono>
#include <string>

#include "http.h"

namespace quilp::kit {

/// One request, which follows no redirect.
struct Transfer {
  std::string address{};  // may hold keys
  Fields headers{};
  std::string certificates{};  // empty for the system's
  std::chrono::milliseconds limit{};
};

/// What came of it.
struct TransferResult {
  enum class Failure { kNone, kUnreachable, kCertificate, kTooLarge, kBroken };

  Failure failure = Failure::kNone;
  std::string why{};  // holds no address
  int status = 0;
  Fields headers{};        // names in lower case
  std::string location{};  // where a redirect leads
  std::string body{};

  /// The value of the last header of that name; empty for none.
  std::string header(const std::string& name) const;
};

/// Sends it by libcurl, which is loaded for the first one: a program that the cache serves starts
/// in half the time. Connections are kept for later transfers.
TransferResult send(const Transfer& transfer);

/// "https://host:1/path" gives "https" and "host:1".
std::string schemeOf(const std::string& address);
std::string hostOf(const std::string& address);

}  // namespace quilp::kit
