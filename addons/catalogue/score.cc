#include "score.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "normalise.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kLongest = 256;  // letters compared; more are cut off

bool isNumber(std::string_view word) {
  return !word.empty() && word.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string_view numberAtEnd(const std::vector<std::string_view>& words) {
  return words.size() > 1 && isNumber(words.back()) ? words.back() : std::string_view();
}

double ratio(std::string_view a, std::string_view b, double least) {
  const std::size_t longest = std::max(a.size(), b.size());
  if (longest == 0) {
    return 0;
  }
  const auto limit = static_cast<unsigned>(std::ceil((1 - least) * static_cast<double>(longest)));
  const unsigned found = distance(a, b, limit);
  return found > limit ? 0 : 1 - static_cast<double>(found) / static_cast<double>(longest);
}

/// How much of the words of both are alike; a word with a letter wrong counts in part.
double overlap(const std::vector<std::string_view>& a, const std::vector<std::string_view>& b) {
  double shared = 0;
  double all = 0;
  for (const std::string_view word : a) {
    double best = 0;
    for (const std::string_view other : b) {
      if (word == other) {
        best = 1;
        break;
      }
      if (word.size() >= 4 && other.size() >= 4) {
        best = std::max(best, ratio(word, other, .7));
      }
    }
    const double weight = std::sqrt(static_cast<double>(word.size()));
    shared += weight * best;
    all += weight;
  }
  double others = 0;
  for (const std::string_view other : b) {
    others += std::sqrt(static_cast<double>(other.size()));
  }
  return all + others > 0 ? 2 * shared / (all + others) : 0;
}

}  // namespace

unsigned distance(std::string_view a, std::string_view b, unsigned limit) {
  while (!a.empty() && !b.empty() && a.front() == b.front()) {
    a.remove_prefix(1);
    b.remove_prefix(1);
  }
  while (!a.empty() && !b.empty() && a.back() == b.back()) {
    a.remove_suffix(1);
    b.remove_suffix(1);
  }
  a = a.substr(0, kLongest);
  b = b.substr(0, kLongest);
  if (a.size() > b.size() + limit || b.size() > a.size() + limit) {
    return limit + 1;
  }
  using Row = std::array<unsigned, kLongest + 1>;
  std::array<Row, 3> rows;
  Row* before = &rows[0];
  Row* above = &rows[1];
  Row* row = &rows[2];
  for (unsigned j = 0; j <= b.size(); ++j) {
    (*above)[j] = j;
  }
  for (std::size_t i = 1; i <= a.size(); ++i) {
    (*row)[0] = static_cast<unsigned>(i);
    unsigned least = (*row)[0];
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const unsigned replaced = (*above)[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      unsigned best = std::min({replaced, (*above)[j] + 1, (*row)[j - 1] + 1});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        best = std::min(best, (*before)[j - 2] + 1);
      }
      (*row)[j] = best;
      least = std::min(least, best);
    }
    if (least > limit) {
      return limit + 1;
    }
    Row* const free = before;
    before = above;
    above = row;
    row = free;
  }
  return (*above)[b.size()];
}

Similarity::Similarity(std::string_view query)
    : query_(query),
      sorted_(sortedWords(query_)),
      words_(wordsOf(query_)),
      number_(numberAtEnd(words_)) {}

double Similarity::to(std::string_view name) const {
  if (name == query_) {
    return 1;
  }
  const std::string sorted = sortedWords(name);
  if (sorted == sorted_) {
    return .97;
  }
  const std::vector<std::string_view> words = wordsOf(name);
  double best = std::max(ratio(query_, name, .4), .95 * ratio(sorted_, sorted, .4));
  best = std::max(best, .96 * overlap(words_, words));
  if (query_.size() >= 4 && name.size() > query_.size() &&
      name.substr(0, query_.size()) == query_) {
    const double part = static_cast<double>(query_.size()) / static_cast<double>(name.size());
    best = std::max(best, name[query_.size()] == ' ' ? .82 + .15 * part : .78 + .2 * part);
  }
  // Part 2 is not part 3, however alike they are.
  if (numberAtEnd(words) != number_) {
    best *= .86;
  }
  return best;
}

double scoreOf(const Fit& fit) {
  double score = 100 * fit.similarity + 0.7 * fit.votesLog;
  score -= fit.source == Source::kAlternative ? 3 : fit.source == Source::kOriginalTitle ? 1.5 : 0;
  if (fit.yearGap == 0) {
    score += 8;
  } else if (fit.yearGap == 1) {
    score += 5;
  } else if (fit.yearGap > 1) {
    score -= std::min(8 + fit.yearGap, 14);
  }
  return score;
}

}  // namespace quilp::catalogue
