#include "words.h"

#include <algorithm>

#include "bytes.h"
#include "layout.h"
#include "score.h"
#include "starts.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kMostReadings = 8;
constexpr std::size_t kMostChecked = 400;
constexpr std::size_t kLongEnoughForTwo = 6;
constexpr std::size_t kWordRoom = 48;  // bytes that hold a posting's count and word

std::vector<std::string> shortened(std::string_view word) {
  std::vector<std::string> all;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (i == 0 || word[i] != word[i - 1]) {
      all.emplace_back(word).erase(i, 1);
    }
  }
  return all;
}

/// The nearest first, then the best known.
void keepBest(std::vector<Reading>& readings) {
  std::sort(readings.begin(), readings.end(), [](const Reading& a, const Reading& b) {
    return a.wrong != b.wrong ? a.wrong < b.wrong : a.number < b.number;
  });
  if (readings.size() > kMostReadings) {
    readings.resize(kMostReadings);
  }
}

}  // namespace

Vocabulary::Vocabulary(Store& store)
    : tables_(store.tables()), buckets_(store.metaNumber("deletion_buckets")) {}

std::vector<Reading> Vocabulary::known(std::string_view word) {
  const auto found = tables_.word(word);
  return found ? std::vector<Reading>{{found->number, found->names, 0}} : std::vector<Reading>();
}

/// Words that are one of the texts, or are one without a letter.
void Vocabulary::lookUp(const std::vector<std::string>& texts,
                        std::vector<std::uint32_t>& numbers) {
  const auto bucketOf = [this](std::uint32_t hash) { return std::uint64_t{hash} * buckets_ >> 32; };
  Tables::Keys buckets;
  for (const std::string& text : texts) {
    buckets.push_back(bucketOf(hashOf(text)));
  }
  tables_.prefetchWords(texts);
  tables_.prefetch("deletion", buckets);
  for (const std::string& text : texts) {
    if (const auto found = tables_.word(text)) {
      numbers.push_back(found->number);
    }
    const std::uint32_t hash = hashOf(text);
    const auto row = tables_.row("deletion", bucketOf(hash));
    for (Unpacker from(row ? std::string_view(*row) : std::string_view()); !from.atEnd();) {
      const unsigned check = from.byte();
      const std::uint32_t number = from.number32();
      if (check == (hash & 0xff)) {
        numbers.push_back(number);
      }
    }
  }
}

void Vocabulary::check(std::string_view word, std::vector<std::uint32_t>& numbers, unsigned limit,
                       std::vector<Reading>& readings) {
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  if (numbers.size() > kMostChecked) {
    numbers.resize(kMostChecked);
  }
  tables_.prefetchStarts("posting", {numbers.begin(), numbers.end()}, kWordRoom);
  for (const std::uint32_t number : numbers) {
    const std::string start = tables_.rowStart("posting", number, kWordRoom);
    Unpacker from(start);
    const std::uint32_t names = from.number32();
    const unsigned wrong = distance(word, from.text(), limit);
    if (wrong > 0 && wrong <= limit) {
      readings.push_back({number, names, wrong});
    }
  }
}

std::vector<Reading> Vocabulary::corrected(std::string_view word) {
  std::vector<Reading> readings;
  if (word.size() < kShortestCorrected || word.size() > kLongestCorrected) {
    return readings;
  }
  std::vector<std::string> texts = shortened(word);
  texts.emplace_back(word);
  std::vector<std::uint32_t> numbers;
  lookUp(texts, numbers);
  check(word, numbers, 1, readings);
  if (readings.empty() && word.size() >= kLongEnoughForTwo) {
    // One letter fewer in the vocabulary, two in the query: a word of theirs, or one of both.
    texts.pop_back();
    std::vector<std::string> shorter;
    for (const std::string& text : texts) {
      const std::vector<std::string> each = shortened(text);
      shorter.insert(shorter.end(), each.begin(), each.end());
    }
    lookUp(shorter, numbers);
    check(word, numbers, 2, readings);
  }
  keepBest(readings);
  return readings;
}

std::vector<Reading> Vocabulary::begun(std::string_view word) {
  std::vector<Reading> readings;
  if (word.size() < kShortestStart) {
    return readings;
  }
  const auto row =
      word.size() <= kLongestStart ? tables_.row("start", startKey(word)) : std::nullopt;
  if (row) {
    for (Unpacker from(*row); !from.atEnd();) {
      const std::uint32_t number = from.number32();
      readings.push_back({number, from.number32(), 1});
    }
  } else {
    for (const FoundWord& found : tables_.wordsFrom(word, kFewWords + 1)) {
      if (found.text != word) {
        readings.push_back({found.word.number, found.word.names, 1});
      }
    }
  }
  keepBest(readings);
  return readings;
}

}  // namespace quilp::catalogue
