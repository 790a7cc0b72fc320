#include "search.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <unordered_map>

#include "bytes.h"
#include "layout.h"
#include "normalise.h"
#include "score.h"
#include "starts.h"
#include "tally.h"
#include "words.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kLongestQuery = 250;
constexpr std::size_t kMostWords = 12;
constexpr std::size_t kCompared = 60;             // names of one round
constexpr std::size_t kPostingBytes = 24576;      // of a word: the best known names that have it
constexpr std::size_t kLeastPostingBytes = 8192;  // of a reading with a letter wrong
constexpr std::size_t kRarest = 3;                // words whose names are looked at
constexpr double kSimilarEnough = .85;
constexpr double kSame = .96;

/// The readings of one word of a query.
struct QueryWord {
  std::string_view text;
  std::vector<Reading> readings;

  std::uint64_t names() const {
    std::uint64_t sum = 0;
    for (const Reading& reading : readings) {
      sum += reading.names;
    }
    return sum;
  }
};

/// The name's text follows them.
std::vector<Reference> referencesIn(Unpacker& from) {
  const std::uint64_t count = from.number();
  if (count > from.rest().size()) {
    throw Damaged("a name has too many titles");
  }
  std::vector<Reference> references(static_cast<std::size_t>(count));
  std::uint32_t rank = 0;
  for (Reference& reference : references) {
    rank += from.number32();
    const unsigned year = from.byte();
    const unsigned flags = from.byte();
    reference = {rank, year == 0 ? 0 : year + kFirstYear, (flags & 1) != 0,
                 static_cast<Source>(flags >> 1 & 3), flags >> 3};
  }
  return references;
}

class Search {
 public:
  Search(Store& store, const Query& query)
      : tables_(store.tables()),
        query_(query),
        vocabulary_(store),
        text_(normalise(std::string_view(query.words).substr(0, kLongestQuery))),
        similarity_(text_),
        exactBuckets_(store.metaNumber("exact_buckets")),
        allNames_(static_cast<double>(store.metaNumber("names")) + 1) {}

  std::vector<Hit> run();

 private:
  void compareSameWords();
  void compareWords(std::vector<QueryWord>& words);
  void addNames(const Reading& word, std::size_t bytes, float weight, Tally& tally);
  void correctUnknown(std::vector<QueryWord>& words);
  void correctKnown(std::vector<QueryWord>& words);
  void splitAndJoin(const std::vector<QueryWord>& words);
  void compare(std::uint32_t name);
  void compareNames(const Tables::Keys& names);
  void compareTexts(const std::vector<std::string>& texts);
  std::vector<Hit> best() const;

  Tables& tables_;
  const Query& query_;
  Vocabulary vocabulary_;
  std::string text_;
  Similarity similarity_;
  std::uint64_t exactBuckets_;
  double allNames_;
  std::unordered_map<std::uint32_t, Hit> hits_;       // by rank
  std::unordered_map<std::uint32_t, bool> compared_;  // names
  double bestSimilarity_ = 0;                         // of the hits whose year fits
};

/// Reads one name and takes the titles that are called so.
void Search::compare(std::uint32_t name) {
  if (!compared_.emplace(name, true).second) {
    return;
  }
  const auto row = tables_.row("name", name / kNamesARow);
  if (!row) {
    throw Damaged("a name is missing");
  }
  Unpacker all(*row);
  for (unsigned skip = name % kNamesARow; skip > 0; --skip) {
    all.text();
  }
  Unpacker from(all.text());
  const std::vector<Reference> references = referencesIn(from);
  const double similarity = similarity_.to(from.rest());
  std::vector<std::pair<double, std::uint32_t>> titles;  // score and rank
  for (const Reference& reference : references) {
    if (query_.kind && (*query_.kind == Kind::kShow) != reference.isShow) {
      continue;
    }
    Fit fit{similarity, reference.votesLog, reference.source, -1};
    if (query_.year != 0 && reference.year != 0) {
      fit.yearGap = std::abs(static_cast<int>(query_.year) - static_cast<int>(reference.year));
    }
    if (fit.yearGap <= 1) {
      bestSimilarity_ = std::max(bestSimilarity_, similarity);
    }
    titles.emplace_back(scoreOf(fit), reference.rank);
  }
  // A short name may have thousands of titles: no more than can be asked for are of use.
  const std::size_t count = std::min(titles.size(), query_.count);
  std::partial_sort(titles.begin(), titles.begin() + static_cast<std::ptrdiff_t>(count),
                    titles.end(), [](const auto& a, const auto& b) {
                      return a.first != b.first ? a.first > b.first : a.second < b.second;
                    });
  titles.resize(count);
  for (const auto& [score, rank] : titles) {
    Hit& hit = hits_[rank];
    if (hit.similarity == 0 || score > hit.score) {
      hit = {rank, score, similarity, std::string(from.rest())};
    }
  }
}

void Search::compareNames(const Tables::Keys& names) {
  Tables::Keys rows;
  rows.reserve(names.size());
  for (const std::uint64_t name : names) {
    rows.push_back(name / kNamesARow);
  }
  tables_.prefetch("name", rows);
  for (const std::uint64_t name : names) {
    compare(static_cast<std::uint32_t>(name));
  }
}

/// Names of the same words as one of the texts, in any order.
void Search::compareTexts(const std::vector<std::string>& texts) {
  std::vector<std::uint32_t> hashes;
  Tables::Keys buckets;
  for (const std::string& text : texts) {
    hashes.push_back(hashOf(sortedWords(text)));
    buckets.push_back(std::uint64_t{hashes.back()} * exactBuckets_ >> 32);
  }
  tables_.prefetch("exact", buckets);
  Tables::Keys names;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const auto row = tables_.row("exact", buckets[i]);
    for (Unpacker from(row ? std::string_view(*row) : std::string_view()); !from.atEnd();) {
      const unsigned check = from.byte();
      const std::uint32_t name = from.number32();
      if (check == (hashes[i] & 0xff)) {
        names.push_back(name);
      }
    }
  }
  compareNames(names);
}

/// Names that share the rarest words, the more and the rarer the better.
void Search::compareWords(std::vector<QueryWord>& words) {
  std::vector<const QueryWord*> known;
  for (const QueryWord& word : words) {
    if (!word.readings.empty()) {
      known.push_back(&word);
    }
  }
  std::stable_sort(known.begin(), known.end(),
                   [](const QueryWord* a, const QueryWord* b) { return a->names() < b->names(); });
  known.resize(std::min(known.size(), kRarest));
  const auto bytesOf = [](const QueryWord& word, const Reading& reading) {
    return reading.wrong == 0 ? kPostingBytes
                              : std::max(kPostingBytes / word.readings.size(), kLeastPostingBytes);
  };
  for (const QueryWord* const word : known) {
    for (const Reading& reading : word->readings) {
      tables_.prefetchStarts("posting", {reading.number}, bytesOf(*word, reading));
    }
  }
  Tally tally;
  for (const QueryWord* const word : known) {
    const double rare = std::log(allNames_ / (static_cast<double>(word->names()) + 1) + 1);
    for (const Reading& reading : word->readings) {
      tally.startReading();
      addNames(reading, bytesOf(*word, reading),
               static_cast<float>(rare / (1 + reading.wrong * .5)), tally);
    }
    tally.endWord();
  }
  Tables::Keys names;
  for (const Tally::Entry& entry : tally.best(kCompared)) {
    names.push_back(entry.name);
  }
  compareNames(names);
}

/// So many bytes of the names that have a word, the best known first.
void Search::addNames(const Reading& word, std::size_t bytes, float weight, Tally& tally) {
  const std::string row = tables_.rowStart("posting", word.number, bytes);
  Unpacker from(row);
  const std::uint32_t count = from.number32();
  from.text();
  std::uint32_t name = 0;
  // The end of a row that was cut off may be half a number.
  const std::size_t rest = row.size() < bytes ? 0 : 5;
  for (std::uint32_t n = 0; n < count && from.rest().size() > rest; ++n) {
    name += from.number32();
    tally.add(name, weight);
  }
}

void Search::correctUnknown(std::vector<QueryWord>& words) {
  for (QueryWord& word : words) {
    if (word.readings.empty()) {
      word.readings = vocabulary_.corrected(word.text);
    }
  }
  QueryWord& last = words.back();
  const std::vector<Reading> begun = vocabulary_.begun(last.text);
  last.readings.insert(last.readings.end(), begun.begin(), begun.end());
}

/// A wrong letter may have made another word of it.
void Search::correctKnown(std::vector<QueryWord>& words) {
  for (QueryWord& word : words) {
    const std::vector<Reading> more = vocabulary_.corrected(word.text);
    word.readings.insert(word.readings.end(), more.begin(), more.end());
  }
}

/// "lamp light" for "lamplight", and the other way.
void Search::splitAndJoin(const std::vector<QueryWord>& words) {
  std::vector<std::string> texts;
  for (const QueryWord& word : words) {
    const auto start = static_cast<std::size_t>(word.text.data() - text_.data());
    if (start > 0 && text_[start - 1] == ' ') {
      texts.emplace_back(text_).erase(start - 1, 1);
    }
    for (std::size_t i = 2; word.readings.empty() && i + 2 <= word.text.size(); ++i) {
      texts.emplace_back(text_).insert(start + i, 1, ' ');
    }
  }
  compareTexts(texts);
}

std::vector<Hit> Search::best() const {
  std::vector<Hit> all;
  all.reserve(hits_.size());
  for (const auto& [rank, hit] : hits_) {
    if (hit.similarity >= .4) {
      all.push_back(hit);
    }
  }
  std::sort(all.begin(), all.end(), [](const Hit& a, const Hit& b) {
    return a.score != b.score ? a.score > b.score : a.rank < b.rank;
  });
  if (all.size() > query_.count) {
    all.resize(query_.count);
  }
  return all;
}

std::vector<Hit> Search::run() {
  if (text_.empty()) {
    return {};
  }
  compareTexts({text_});
  if (bestSimilarity_ >= kSame) {
    return best();
  }
  std::vector<QueryWord> words;
  std::vector<std::string_view> texts = wordsOf(text_);
  texts.resize(std::min(texts.size(), kMostWords));
  tables_.prefetchWords({texts.begin(), texts.end()});
  tables_.prefetch("start", {startKey(texts.back())});
  words.reserve(texts.size());
  for (const std::string_view word : texts) {
    words.push_back({word, vocabulary_.known(word)});
  }
  correctUnknown(words);
  compareWords(words);
  if (bestSimilarity_ < kSimilarEnough) {
    splitAndJoin(words);
  }
  if (bestSimilarity_ < kSimilarEnough) {
    correctKnown(words);
    compareWords(words);
  }
  return best();
}

}  // namespace

std::vector<Hit> search(Store& store, const Query& query) { return Search(store, query).run(); }

std::vector<Title> titlesOf(Store& store, const std::vector<Hit>& hits) {
  Tables::Keys rows;
  rows.reserve(hits.size());
  for (const Hit& hit : hits) {
    rows.push_back(hit.rank / kTitlesARow);
  }
  store.tables().prefetch("title", rows);
  std::vector<Title> titles;
  titles.reserve(hits.size());
  for (const Hit& hit : hits) {
    titles.push_back(store.title(hit.rank));
  }
  return titles;
}

}  // namespace quilp::catalogue
