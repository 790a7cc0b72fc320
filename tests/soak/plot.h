#pragma once

#include <string>
#include <vector>

/// What the process holds after so many lookups.
struct Sample {
  long lookups;
  long residentKiB;
  long heapKiB;  // in use
  long descriptors;
  long threads;
  long children;
};

/// An SVG document of the samples over the lookups, a panel for each holding.
std::string plotOf(const std::vector<Sample>& samples);
