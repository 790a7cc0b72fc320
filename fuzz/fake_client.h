#pragma once

#include <functional>
#include <string>
#include <string_view>

// Takes the place of system and popen: answers the library's commands for the appliance's client,
// without a process, and ends the run for any other command.

namespace fuzz {

/// The page for an address; called from any thread.
using Site = std::function<std::string_view(const std::string& address)>;

/// As long as it lives, the client fetches from this site.
class FakeClient {
 public:
  explicit FakeClient(Site site);
  ~FakeClient();
  FakeClient(const FakeClient&) = delete;
  FakeClient& operator=(const FakeClient&) = delete;
};

}  // namespace fuzz
