#pragma once

#include <string>
#include <vector>

namespace quilp {

/// A message that there is no such command, option or value. It suggests the most similar known
/// word, or lists all of them when none is similar.
std::string noSuch(const std::string& kind, const std::string& word,
                   const std::vector<std::string>& known);

/// The words with commas between.
std::string joined(const std::vector<std::string>& words);

}  // namespace quilp
