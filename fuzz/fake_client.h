#pragma once

#include <functional>
#include <string>
#include <string_view>

// Replaces system and popen: answers the library's curl commands without a process, and aborts the
// run for any other command.

namespace fuzz {

/// The page for an address; called from any thread.
using Site = std::function<std::string_view(const std::string& address)>;

/// While an object of this class exists, curl fetches from its site.
class FakeClient {
 public:
  explicit FakeClient(Site site);
  ~FakeClient();
  FakeClient(const FakeClient&) = delete;
  FakeClient& operator=(const FakeClient&) = delete;
};

}  // namespace fuzz
