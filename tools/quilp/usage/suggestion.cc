#include "usage/suggestion.h"

#include <algorithm>

namespace quilp {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// How many letters must be changed, put in, left out or exchanged with their neighbour.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        steps[i][j] = i + j;
        continue;
      }
      const std::size_t changed =
          steps[i - 1][j - 1] + (lower(a[i - 1]) == lower(b[j - 1]) ? 0 : 1);
      steps[i][j] = std::min({changed, steps[i - 1][j] + 1, steps[i][j - 1] + 1});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
      }
    }
  }
  return steps[a.size()][b.size()];
}

}  // namespace

std::string noSuch(const std::string& kind, const std::string& word,
                   const std::vector<std::string>& known) {
  constexpr std::size_t kLongest = 64;  // of a word that is worth comparing
  std::string nearest;
  std::size_t least = word.size() < kLongest ? std::max<std::size_t>(1, word.size() / 3) + 1 : 0;
  for (const std::string& candidate : known) {
    const std::size_t steps = least > 0 ? distance(word, candidate) : 0;
    if (steps < least) {
      least = steps;
      nearest = candidate;
    }
  }
  return "there is no " + kind + " \"" + word + '"' +
         (nearest.empty() ? "; there are " + joined(known) : "; did you mean \"" + nearest + "\"?");
}

std::string joined(const std::vector<std::string>& words) {
  std::string all;
  for (const std::string& word : words) {
    all += (all.empty() ? "" : ", ") + word;
  }
  return all;
}

}  // namespace quilp
