#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace quilp {

/// What a reason made of a candidate's confidence.
struct ScorePart {
  int points;
  std::string why;
};

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
  std::string comparedTitle{};             // the one that the name is most like
  std::vector<ScorePart> parts{};          // their points add up to the confidence
  std::string artist{};                    // of an album

  void add(int points, const std::string& why, int most = 100) {
    const int before = confidence;
    confidence = std::clamp(before + points, 0, most);
    reason += (reason.empty() ? "" : "; ") + why;
    parts.push_back({confidence - before, why});
  }
};

using Candidates = std::vector<Candidate>;

}  // namespace quilp
