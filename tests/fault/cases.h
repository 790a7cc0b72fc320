#pragma once

#include <functional>
#include <string>
#include <vector>

/// A call of an exported function, or of several, apart by blanks.
struct FaultCase {
  std::string functions;
  /// The add-on's type; a function without one does not look for an add-on.
  std::string type;
  /// What the header lets the call give besides its result without a fault.
  std::vector<int> failures;
  /// Makes the call, and releases what it gave as the header says.
  std::function<int()> call;
};

std::vector<FaultCase> faultCases();
