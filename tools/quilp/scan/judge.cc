#include "scan/judge.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <deque>

#include "catalogue/normalise.h"
#include "catalogue/score.h"

namespace quilp {
namespace {

using catalogue::normalise;
using catalogue::Similarity;

constexpr double kSame = .965;      // the same words, maybe in another order
constexpr double kAlike = .88;      // a letter or two wrong
constexpr int kRivalGap = 6;        // points that a rival is behind
constexpr int kMostWithRival = 70;  // points of a candidate that has one
constexpr long kFarBetterKnown = 30;

struct Points {
  int points;
  const char* reason;
};

Points ofYear(const Wanted& name, int year) {
  const int wanted = name.year;
  if (wanted == 0) {
    return {-12, "the name has no year"};
  }
  if (year == 0) {
    return {-18, "the title's year is not known"};
  }
  const int gap = std::abs(wanted - year);
  if (gap == 0) {
    return {0, "the year fits"};
  }
  if (gap > 1 && name.isEpisode && wanted > year) {
    return {-17, "the show began before"};
  }
  return gap == 1  ? Points{-8, "the year differs by one"}
         : gap < 4 ? Points{-35, "the year differs"}
                   : Points{-50, "the year differs"};
}

Points ofTitle(double similarity) {
  const char* reason = similarity >= .999     ? "the title is the same"
                       : similarity >= kSame  ? "the title has the same words"
                       : similarity >= kAlike ? "the title is nearly the same"
                       : similarity >= .6     ? "the title is similar"
                                              : "the title differs";
  // Few letters make much of a short title: what is not nearly the same loses fast.
  const double lost = (1 - similarity) * (similarity >= kAlike ? 130 : 170);
  return {99 - static_cast<int>(std::lround(lost)), reason};
}

/// How alike the best pair of titles is.
class Titles {
 public:
  explicit Titles(const std::vector<std::string>& titles) {
    for (const std::string& title : titles) {
      wanted_.emplace_back(normalise(title));
    }
  }
  /// Of the best of a candidate's titles, which it notes.
  double to(Candidate& candidate) const {
    double best = compare(candidate.title);
    candidate.byOwnTitle = true;
    candidate.comparedTitle = candidate.title;
    for (const std::string& title : candidate.otherTitles) {
      const double one = compare(title);
      if (one > best) {
        best = one;
        candidate.byOwnTitle = false;
        candidate.comparedTitle = title;
      }
    }
    return best;
  }

 private:
  double compare(const std::string& title) const {
    const std::string text = normalise(title);
    double best = 0;
    for (std::size_t i = 0; i < wanted_.size() && !text.empty(); ++i) {
      best = std::max(best, wanted_[i].to(text));
    }
    return best;
  }
  std::deque<Similarity> wanted_;
};

/// A name that is the other's own title may well be meant so, however little known that is.
bool isFarBetterKnown(const Candidate& candidate, const Candidate& other) {
  return (candidate.byOwnTitle || !other.byOwnTitle) &&
         candidate.votes >= kFarBetterKnown * std::max(other.votes, 1L);
}

void sort(Candidates& candidates) {
  std::stable_sort(
      candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
        return a.confidence != b.confidence ? a.confidence > b.confidence : a.votes > b.votes;
      });
}

}  // namespace

void weighRivals(Candidates& candidates) {
  if (candidates.empty()) {
    return;
  }
  sort(candidates);
  Candidate& best = candidates.front();
  int rivals = 0;
  for (std::size_t i = 1; i < candidates.size(); ++i) {
    const Candidate& other = candidates[i];
    rivals += best.confidence - other.confidence < kRivalGap && other.id != best.id &&
                      !isFarBetterKnown(best, other)
                  ? 1
                  : 0;
  }
  if (rivals > 0) {
    best.add(std::min(kMostWithRival - best.confidence, 0),
             std::to_string(rivals) +
                 (rivals == 1 ? " other title fits as well" : " other titles fit as well"));
  }
}

double similarity(const std::string& a, const std::string& b) {
  const std::string text = normalise(b);
  return text.empty() ? 0 : Similarity(normalise(a)).to(text);
}

void judge(const Wanted& wanted, Candidates& candidates) {
  const Titles titles(wanted.titles);
  for (Candidate& candidate : candidates) {
    candidate.confidence = 0;  // it may have been judged before
    candidate.reason.clear();
    candidate.parts.clear();
    for (const Points& part : {ofTitle(titles.to(candidate)), ofYear(wanted, candidate.year)}) {
      candidate.add(part.points, part.reason);
    }
  }
  sort(candidates);
}

}  // namespace quilp
