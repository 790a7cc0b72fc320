#pragma once

#include <functional>
#include <string>
#include <vector>

// Helpers of the tests. They run in the box, with their own /etc/config, /tmp and /var/tmp; curl
// fetches from the sample site.

namespace test {

void writeFile(const std::string& path, const std::string& text);
std::string readFile(const std::string& path);

/// Writes a program for /bin/sh, made executable; returns its path.
std::string writeScript(const std::string& path, const std::string& body);

/// Puts an enabled add-on of the type and the library's class into the registry, alone.
void registerAddOn(const std::string& type, const std::string& shell);
void removeRegistry();

/// Registers an add-on of the type that writes its arguments down, runs `more` and answers with the
/// document, for which "$file" stands.
void answerWith(const std::string& type, const std::string& document, const std::string& more = "");
/// The arguments of its last call as "[verb][-t][…]…", without the document's file.
std::string arguments();

/// A script in the place of curl, which is /sbin/real then.
class Curl {
 public:
  explicit Curl(const std::string& body);
  ~Curl();
  Curl(const Curl&) = delete;
  Curl& operator=(const Curl&) = delete;
};

/// What `action` writes to standard output, and to standard error.
std::string standardOutputOf(const std::function<void()>& action);
std::string standardErrorOf(const std::function<void()>& action);

/// "HOST METHOD PATH STATUS" for each request that the site has answered since the last call.
std::vector<std::string> newSiteRequests();

/// The most memory that the process has held; 0 where a sanitizer keeps what is released.
long mostMemoryKiB();

/// Resources that a call must release.
struct Holdings {
  std::size_t descriptors;
  std::size_t threads;
  std::size_t children;
  std::size_t temporaryFiles;

  static Holdings now();
  /// The same, but waits a little for `before`: a joined thread is seen for a moment yet.
  static Holdings after(const Holdings& before);
  bool operator==(const Holdings& other) const;
};
std::ostream& operator<<(std::ostream& out, const Holdings& holdings);

}  // namespace test
