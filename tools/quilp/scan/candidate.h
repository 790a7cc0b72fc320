#pragma once

#include <string>
#include <vector>

namespace quilp {

/// A title that a search offers for a file.
struct Candidate {
  std::string id;
  std::string title;
  int year = 0;                            // 0: unknown
  std::vector<std::string> otherTitles{};  // the original one, and in other languages
  long votes = 0;                          // 0: unknown
  int confidence = 0;                      // that it is the file's, 0 to 100
  std::string reason{};                    // for the confidence
  bool byOwnTitle = true;                  // rather than by one of the others
};

using Candidates = std::vector<Candidate>;

}  // namespace quilp
