#pragma once

#include <string>
#include <vector>

#include "scan/candidate.h"

namespace quilp {

/// What the name of a file says that a candidate can be compared with.
struct Wanted {
  std::vector<std::string> titles;  // the title first, then alternative ones
  int year = 0;                     // 0: the name has none
  bool isEpisode = false;           // then the year may be of any season
};

/// Gives each candidate its confidence and the reason, and puts the best one first.
void judge(const Wanted& wanted, Candidates& candidates);

/// The best candidate is not sure where another fits as well, unless it is known far better.
void weighRivals(Candidates& candidates);

/// 1 for the same title but for case, accents and punctuation, 0 for nothing in common.
double similarity(const std::string& a, const std::string& b);

}  // namespace quilp
