#pragma once

#include <functional>
#include <string>
#include <vector>

namespace test {

/// A program that was started, with its arguments; its own name is the first.
struct Program {
  std::string file;
  std::vector<std::string> arguments;
};

/// What the call starts, in this order. A shell that has something to say is a failure.
std::vector<Program> programsStartedBy(const std::function<void()>& call);

/// The addresses that the client is called with. What else it is given must be what the library
/// says to it, and no other program may be started but the shell and rm.
std::vector<std::string> addressesFetchedBy(const std::function<void()>& call);

}  // namespace test
