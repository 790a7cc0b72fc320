#pragma once

#include <functional>
#include <string>
#include <vector>

/// One way through an exported function.
struct FaultCase {
  std::string function;
  std::string route;
  /// Calls the function between two calls of `arm` and `disarm`, and releases what it gave as the
  /// header says. The result, or kOutOfMemory.
  std::function<int()> call;
  /// What the header lets it give besides the result of a call without a fault.
  std::vector<int> failures;
};

constexpr int kOutOfMemory = -1000;     // std::bad_alloc left the call
constexpr int kOtherException = -1001;  // never allowed
constexpr int kTornOutput = -1002;      // half a document was printed: never allowed

/// What a case does around the call alone.
struct FaultWindow {
  std::function<void()> open;
  std::function<void()> close;
};
extern FaultWindow faultWindow;

std::vector<FaultCase> faultCases();

/// Puts the client and the add-on of `folder` into the box.
void prepareRoutes(const std::string& folder);
void chooseRoute(const std::string& route);
