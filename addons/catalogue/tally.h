#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quilp::catalogue {

/// Adds up what the words of a query say for each name. A word that a name has in several readings
/// counts once, as the best of them. Sorted lists, as common words have tens of thousands of names:
/// a table of them all would take more memory, whose pages cost more than the work.
class Tally {
 public:
  struct Entry {
    std::uint32_t name = 0;
    float weight = 0;
  };

  /// Names of one reading of the present word ascend.
  void startReading() { starts_.push_back(word_.size()); }
  void add(std::uint32_t name, float weight) { word_.push_back({name, weight}); }

  /// All readings of a word are added.
  void endWord() {
    mergeReadings();
    std::vector<Entry> sum;
    sum.reserve(all_.size() + word_.size());
    auto one = all_.begin();
    for (std::size_t i = 0; i < word_.size(); ++i) {
      Entry entry = word_[i];
      for (; i + 1 < word_.size() && word_[i + 1].name == entry.name; ++i) {
        entry.weight = std::max(entry.weight, word_[i + 1].weight);
      }
      for (; one != all_.end() && one->name < entry.name; ++one) {
        sum.push_back(*one);
      }
      if (one != all_.end() && one->name == entry.name) {
        entry.weight += one->weight;
        ++one;
      }
      sum.push_back(entry);
    }
    sum.insert(sum.end(), one, all_.end());
    all_.swap(sum);
    word_.clear();
    starts_.clear();
  }

  /// The names with the most weight, the best known first of those alike.
  std::vector<Entry> best(std::size_t count) {
    count = std::min(count, all_.size());
    const auto end = all_.begin() + static_cast<std::ptrdiff_t>(count);
    std::partial_sort(all_.begin(), end, all_.end(), [](const Entry& a, const Entry& b) {
      return a.weight != b.weight ? a.weight > b.weight : a.name < b.name;
    });
    return {all_.begin(), end};
  }

 private:
  /// Merges neighbours until one list is left.
  void mergeReadings() {
    const auto at = [this](std::size_t start) {
      return word_.begin() + static_cast<std::ptrdiff_t>(start);
    };
    while (starts_.size() > 1) {
      std::vector<std::size_t> starts;
      for (std::size_t i = 0; i < starts_.size(); i += 2) {
        starts.push_back(starts_[i]);
        if (i + 1 < starts_.size()) {
          const std::size_t end = i + 2 < starts_.size() ? starts_[i + 2] : word_.size();
          std::inplace_merge(at(starts_[i]), at(starts_[i + 1]), at(end),
                             [](const Entry& a, const Entry& b) { return a.name < b.name; });
        }
      }
      starts_.swap(starts);
    }
  }

  std::vector<std::size_t> starts_;  // of the readings in word_
  std::vector<Entry> word_;
  std::vector<Entry> all_;  // each name once
};

}  // namespace quilp::catalogue
