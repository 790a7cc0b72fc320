#include "starts.h"

#include <algorithm>

#include "bytes.h"

namespace quilp::catalogue {

void Starts::add(std::string_view text, const Word& word) {
  for (std::size_t size = kShortestStart; size <= kLongestStart && size < text.size(); ++size) {
    Start& start = open_[size];
    if (text.substr(0, size) != start.text) {
      close(start);
      start.text = text.substr(0, size);
    }
    ++start.count;
    const auto place = std::find_if(start.best.begin(), start.best.end(),
                                    [&](const Word& each) { return word.number < each.number; });
    if (place != start.best.end() || start.best.size() < kWordsOfAStart) {
      start.best.insert(place, word);
      start.best.resize(std::min<std::size_t>(start.best.size(), kWordsOfAStart));
    }
  }
}

void Starts::close(Start& start) {
  if (start.count > kFewWords) {
    std::string value;
    Packer to(value);
    for (const Word& word : start.best) {
      to.number(word.number);
      to.number(word.names);
    }
    rows_.emplace_back(startKey(start.text), std::move(value));
  }
  start = Start();
}

std::vector<std::pair<std::uint64_t, std::string>> Starts::rows() {
  for (Start& start : open_) {
    close(start);
  }
  std::sort(rows_.begin(), rows_.end());
  return std::move(rows_);
}

}  // namespace quilp::catalogue
