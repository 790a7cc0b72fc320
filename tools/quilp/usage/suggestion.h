#pragma once

#include <string>
#include <vector>

namespace quilp {

/// A message that there is no such command, option or value: with the nearest of those that there
/// are, or all of them when none is near.
std::string noSuch(const std::string& kind, const std::string& word,
                   const std::vector<std::string>& known);

/// The words with commas between.
std::string joined(const std::vector<std::string>& words);

}  // namespace quilp
