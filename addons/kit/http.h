#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "settings.h"

namespace quilp::kit {

class HttpCache;
class Pace;

/// Names and values: of a query, or headers.
using Fields = std::vector<std::pair<std::string, std::string>>;

/// A service on the network.
struct Service {
  const char* section;  // of the settings
  const char* base;     // address, unless the settings have another; "{language}" is replaced
  int requests;         // at most so many
  int seconds;          // in so many seconds, by all processes of the machine

  /// Seconds for which an answer is fresh if its headers do not say.
  int freshFor = 3600;
};

struct HttpRequest {
  std::string path{};  // begins with "/", percent-encoded
  Fields query{};      // not encoded
  Fields headers{};
  Fields secretQuery{};    // keys: neither messages nor the cache hold them
  Fields secretHeaders{};  // no other host is sent them
  std::string language{};  // for "{language}" in the base

  /// There is no answer after that, however long the settings would wait.
  std::chrono::steady_clock::time_point end = std::chrono::steady_clock::time_point::max();

  /// Asks the service even if the cache has a fresh answer.
  bool isReload = false;
};

struct HttpAnswer {
  bool isFound = false;   // false: the service says that there is nothing (404, 410)
  std::string body{};     // at most 16 MB
  bool isCached = false;  // the service was not asked, or says that nothing changed
  bool isStale = false;   // an old copy, since the service gives no answer
};

/// There is no answer. The text is one sentence.
class HttpError : public std::runtime_error {
 public:
  enum class Reason {
    kUnreachable,  // no network, no connection, or too slow
    kCertificate,  // the host does not prove that it is itself
    kKeyRefused,   // 401, or there is none
    kBlocked,      // 403, 451
    kBusy,         // 429, 503, or too many requests of this machine wait
    kWrongAnswer,  // anything else
  };

  HttpError(Reason reason, const std::string& text) : std::runtime_error(text), reason_(reason) {}
  Reason reason() const { return reason_; }

 private:
  Reason reason_;
};

/// "a b&c" gives "a%20b%26c", for a part of a path.
std::string percentEncoded(const std::string& text);

/// Asks one service by HTTP GET: within its pace, within time limits, and with the machine's cache.
/// An old copy is better than no answer; a line on standard error tells of it. All requests of a
/// process are made by one thread.
///
/// The settings of a service are base=, key= or key_file=, language=, timeout= (seconds for a whole
/// request, 20 unless given), certificates= (a file of authorities, instead of the system's).
class Http {
 public:
  /// Throws std::runtime_error if a setting is wrong.
  Http(const Settings& settings, const Service& service);
  ~Http();
  Http(const Http&) = delete;
  Http& operator=(const Http&) = delete;

  const std::string& key() const { return key_; }            // empty for none
  const std::string& language() const { return language_; }  // empty for none

  /// For a service that answers nobody without a key. Throws HttpError.
  void requireKey() const;

  /// Throws HttpError.
  HttpAnswer get(const HttpRequest& request);

  /// Makes a request past the cache, which must find something if it is asked to. Returns a
  /// sentence for "quilp addon test", or throws HttpError.
  std::string test(HttpRequest request, bool mustFind = true);

 private:
  class Call;

  Pace& paceOf(const std::string& host, bool isOwn);

  Service service_;
  std::string base_;
  std::string key_;
  std::string language_;
  std::string certificates_;
  int timeout_ = 0;
  std::string folder_;  // of the cache
  HttpCache& cache_;
  std::map<std::string, std::unique_ptr<Pace>> paces_;  // of hosts
};

}  // namespace quilp::kit
