#pragma once

#include <functional>
#include <string>
#include <vector>

/// One lookup of a round. Hostile is what no honest page, add-on or caller would give.
struct Lookup {
  const char* domain;
  bool addOn;
  bool hostile;
  std::function<bool()> call;  // whether it found something
};

/// A round: every domain by both routes.
std::vector<Lookup> roundOfLookups();
