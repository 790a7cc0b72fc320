#include "import.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <utility>

#include "bytes.h"
#include "data_sets.h"
#include "gather.h"
#include "layout.h"
#include "new_store.h"
#include "normalise.h"
#include "sorter.h"
#include "starts.h"
#include "store.h"

namespace quilp::catalogue {
namespace {

constexpr double kTitlesShare = 0.1;
constexpr std::uint64_t kRowsATell = 65536;

unsigned bitsOf(std::uint32_t value) {
  unsigned bits = 0;
  for (; value != 0; value >>= 1) {
    ++bits;
  }
  return bits;
}

void packReference(const Reference& reference, std::uint32_t before, Packer& to) {
  to.number(reference.rank - before);
  to.byte(reference.year > kFirstYear && reference.year < kFirstYear + 255
              ? reference.year - kFirstYear
              : 0);
  to.byte((reference.isShow ? 1U : 0U) | static_cast<unsigned>(reference.source) << 1 |
          reference.votesLog << 3);
}

/// Puts consecutive items into one row of a table.
class Rowed {
 public:
  Rowed(NewStore& store, const char* table, unsigned itemsARow, bool deflate)
      : store_(store), table_(table), itemsARow_(itemsARow), deflate_(deflate) {}

  void add(std::uint64_t key, std::string_view item) {
    if (key / itemsARow_ != row_) {
      flush();
      row_ = key / itemsARow_;
    }
    bytes_ += item;
  }
  void flush() {
    if (!bytes_.empty()) {
      store_.insert(table_, row_, deflate_ ? deflated(bytes_) : bytes_);
      bytes_.clear();
    }
  }

 private:
  NewStore& store_;
  const char* table_;
  unsigned itemsARow_;
  bool deflate_;
  std::uint64_t row_ = 0;
  std::string bytes_;
};

class Import {
 public:
  Import(const ImportOptions& options, const OnProgress& progress)
      : options_(options),
        progress_(progress),
        sets_(options.from),
        store_(isServer(options.to) ? newOnServer(options.to) : newFile(options.to)) {}

  Imported run();

 private:
  std::unique_ptr<Sorter> sorter(unsigned share) const {
    return std::make_unique<Sorter>(options_.memory / share, temporaryFolder(options_));
  }
  void gather();
  void writeTitles();
  void writeSeasons();
  void writePeople();
  void writeIdents();
  void writeNames();
  void writeExact();
  void writeWords();
  void writeDeletions();
  void numberPeople(std::vector<Person>& people);
  void tell(const char* stage, double fraction) {
    progress_({stage, result_.titles + result_.episodes, fraction});
  }

  const ImportOptions& options_;
  const OnProgress& progress_;
  DataSets sets_;
  std::unique_ptr<NewStore> store_;
  Imported result_;
  std::unique_ptr<Gatherer> gathered_;
  std::unique_ptr<Sorter> names_;       // key: name; value: reference
  std::unique_ptr<Sorter> ranked_;      // key: best rank, name; value: references
  std::unique_ptr<Sorter> exact_;       // key: hash of sorted words; value: number of a name
  std::unique_ptr<Sorter> words_;       // key: word; value: number of a name
  std::unique_ptr<Sorter> postings_;    // key: first name, how many, word; value: names
  std::unique_ptr<Sorter> vocabulary_;  // key: word; value: number, how many names
  std::unique_ptr<Sorter> deletions_;   // key: hash of a word without a letter; value: number
};

void Import::gather() {
  while (true) {
    try {
      result_ = Imported();
      result_.missing = sets_.missing();
      gathered_ = std::make_unique<Gatherer>(options_, sets_, progress_, result_);
      gathered_->gather();
      return;
    } catch (const OutOfOrder& error) {
      gathered_.reset();
      tell("sorting a file whose rows are not in order", 0);
      sets_.sort(error.path, options_.memory, temporaryFolder(options_));
    }
  }
}

void Import::numberPeople(std::vector<Person>& people) {
  if (sets_.names().empty()) {
    people.clear();
    return;
  }
  for (Person& person : people) {
    person.id = gathered_->people().numberOf(person.id);
  }
}

/// In the order of rank: the titles themselves, and their names for later.
void Import::writeTitles() {
  Sorter& titles = gathered_->titles();
  titles.sort();
  gathered_->people().number();
  names_ = sorter(3);
  Rowed rows(*store_, "title", kTitlesARow, true);
  Reference reference;
  std::string bytes;
  std::string key;
  for (std::uint32_t rank = 0; titles.next(); ++rank) {
    Unpacker from(titles.value());
    std::vector<std::string_view> names(static_cast<std::size_t>(from.number()));
    for (std::string_view& name : names) {
      name = from.text();
    }
    Title title = unpackTitle(from);
    numberPeople(title.directors);
    numberPeople(title.creators);
    numberPeople(title.cast);
    bytes.clear();
    pack(title, bytes);
    rows.add(rank, bytes);

    reference = {rank, title.year, title.kind() == Kind::kShow, Source::kTitle,
                 bitsOf(title.votes)};
    for (const std::string_view name : names) {
      reference.source = static_cast<Source>(name[0]);
      bytes.clear();
      Packer to(bytes);
      appendSortable(bytes, rank);
      packReference(reference, rank, to);
      names_->add(name.substr(1), bytes);
    }
    key.clear();
    appendSortable(key, title.id);
    bytes.assign(1, '\0');
    Packer(bytes).number(rank);
    gathered_->idents().add(key, bytes);
    if (rank % kRowsATell == 0) {
      tell("writing titles",
           kReadingShare + kTitlesShare * rank / static_cast<double>(result_.titles));
    }
  }
  rows.flush();
}

void Import::writeSeasons() {
  Sorter& episodes = gathered_->episodes();
  episodes.sort();
  Rowed rows(*store_, "season", 1, true);
  while (episodes.next()) {
    const std::uint64_t show = sortable(episodes.key());
    rows.add(show * kSeasons + sortable(episodes.key().substr(4)), episodes.value());
  }
  rows.flush();
}

void Import::writePeople() {
  if (sets_.names().empty()) {
    return;
  }
  const People& people = gathered_->people();
  const std::unique_ptr<Sorter> sorted = sorter(3);
  std::string key;
  Rows rows(sets_.names(), {"nconst", "primaryName"}, Rows::Order::kAny);
  while (rows.next()) {
    const std::string_view text = rows.id();
    const std::uint32_t id = text.substr(0, 2) == "nm" ? idOf(text.substr(2)) : 0;
    if (id == 0) {
      rows.reject("no identifier such as nm0000001");
    } else if (people.has(id)) {
      key.clear();
      appendSortable(key, people.numberOf(id));
      sorted->add(key, rows[1]);
    }
  }
  addBroken(sets_.names(), rows.broken(), result_);
  sorted->sort();
  Rowed written(*store_, "person", kPeopleARow, false);
  std::string item;
  bool more = sorted->next();
  for (std::uint32_t number = 0; number < people.count(); ++number) {
    item.clear();
    const bool known = more && sortable(sorted->key()) == number;
    Packer(item).text(known ? sorted->value() : std::string_view());
    written.add(number, item);
    while (more && sortable(sorted->key()) <= number) {
      more = sorted->next();
    }
  }
  written.flush();
  result_.people = people.count();
}

void Import::writeIdents() {
  Sorter& idents = gathered_->idents();
  idents.sort();
  Rowed rows(*store_, "ident", kIdentsARow, false);
  std::string item;
  while (idents.next()) {
    const std::uint32_t id = sortable(idents.key());
    const bool isEpisode = idents.value()[0] != '\0';
    item.assign(1, static_cast<char>(id % kIdentsARow + (isEpisode ? kIdentsARow : 0)));
    item += idents.value().substr(1);
    rows.add(id, item);
  }
  rows.flush();
  gathered_.reset();
}

/// Puts the references of each name together, then the names in order of the best known title.
void Import::writeNames() {
  names_->sort();
  ranked_ = sorter(3);
  std::string name;
  std::string key;
  std::string list;
  std::uint32_t count = 0;
  std::uint32_t best = 0;
  std::uint32_t last = 0;
  const auto close = [&] {
    if (count > 0) {
      key.clear();
      appendSortable(key, best);
      key += name;
      std::string value;
      Packer(value).number(count);
      ranked_->add(key, value + list);
    }
  };
  while (names_->next()) {
    const std::uint32_t rank = sortable(names_->value());
    if (count == 0 || names_->key() != name) {
      close();
      name = names_->key();
      list.clear();
      count = 0;
      best = rank;
      last = 0;
    }
    Packer(list).number(rank - last);
    list += names_->value().substr(5);  // after the rank, and the 0 in place of a difference
    last = rank;
    ++count;
  }
  close();
  names_.reset();

  ranked_->sort();
  exact_ = sorter(6);
  words_ = sorter(2);
  Rowed rows(*store_, "name", kNamesARow, false);
  std::uint32_t number = 0;
  std::string text;
  for (; ranked_->next(); ++number) {
    const std::string_view normalised = ranked_->key().substr(4);
    text.clear();
    Packer item(text);
    item.number(ranked_->value().size() + normalised.size());
    text.append(ranked_->value()).append(normalised);
    rows.add(number, text);
    key.clear();
    appendSortable(key, hashOf(sortedWords(normalised)));
    text.clear();
    appendSortable(text, number);
    exact_->add(key, text);
    for (const std::string_view word : wordsOf(normalised)) {
      words_->add(word, text);
    }
    if (number % kRowsATell == 0) {
      tell("writing names", kReadingShare + kTitlesShare * 2);
    }
  }
  rows.flush();
  result_.names = number;
  ranked_.reset();
}

void Import::writeExact() {
  const std::uint32_t buckets = static_cast<std::uint32_t>(result_.names / kNamesABucket) + 1;
  store_->meta("exact_buckets", std::to_string(buckets));
  exact_->sort();
  // The bucket is the hash's place among all hashes, so buckets come in order.
  Rowed rows(*store_, "exact", 1, false);
  std::string item;
  while (exact_->next()) {
    const std::uint32_t hash = sortable(exact_->key());
    item.assign(1, static_cast<char>(hash));
    Packer(item).number(sortable(exact_->value()));
    rows.add(std::uint64_t{hash} * buckets >> 32, item);
  }
  rows.flush();
  exact_.reset();
}

void Import::writeWords() {
  words_->sort();
  postings_ = sorter(3);
  std::string word;
  std::string key;
  std::string list;
  std::uint32_t count = 0;
  std::uint32_t first = 0;
  std::uint32_t last = 0;
  const auto close = [&] {
    if (count > 0) {
      key.clear();
      appendSortable(key, first);
      appendSortable(key, count);
      key += word;
      postings_->add(key, list);
    }
  };
  while (words_->next()) {
    const std::uint32_t name = sortable(words_->value());
    if (count == 0 || words_->key() != word) {
      close();
      word = words_->key();
      list.clear();
      count = last = 0;
      first = name;
    } else if (name == last) {
      continue;  // twice in the same name
    }
    Packer(list).number(name - last);
    last = name;
    ++count;
  }
  close();
  words_.reset();

  postings_->sort();
  vocabulary_ = sorter(6);
  deletions_ = sorter(3);
  std::uint32_t number = 0;
  std::string value;
  for (; postings_->next(); ++number) {
    const std::string_view text = postings_->key().substr(8);
    const std::uint32_t names = sortable(postings_->key().substr(4));
    value.clear();
    Packer(value).number(names);
    Packer(value).text(text);
    value += postings_->value();
    store_->insert("posting", number, value);
    value.clear();
    appendSortable(value, number);
    appendSortable(value, names);
    vocabulary_->add(text, value);
    if (text.size() < kShortestCorrected || text.size() > kLongestCorrected ||
        static_cast<unsigned char>(text[0]) >= 0xe3) {
      continue;
    }
    value.resize(4);
    for (std::size_t i = 0; i < text.size(); ++i) {
      std::string shorter(text);
      shorter.erase(i, 1);
      key.clear();
      appendSortable(key, hashOf(shorter));
      deletions_->add(key, value);
    }
  }
  result_.words = number;
  postings_.reset();
  vocabulary_->sort();
  Starts starts;
  while (vocabulary_->next()) {
    const std::string_view numbers = vocabulary_->value();
    const Word entry = {sortable(numbers), sortable(numbers.substr(4))};
    store_->word(vocabulary_->key(), entry);
    starts.add(vocabulary_->key(), entry);
  }
  vocabulary_.reset();
  for (const auto& [start, best] : starts.rows()) {
    store_->insert("start", start, best);
  }
}

void Import::writeDeletions() {
  deletions_->sort();
  const std::uint32_t buckets = static_cast<std::uint32_t>(result_.words) + 1;
  store_->meta("deletion_buckets", std::to_string(buckets));
  Rowed rows(*store_, "deletion", 1, false);
  std::string item;
  while (deletions_->next()) {
    const std::uint32_t hash = sortable(deletions_->key());
    item.assign(1, static_cast<char>(hash));
    Packer(item).number(sortable(deletions_->value()));
    rows.add(std::uint64_t{hash} * buckets >> 32, item);
  }
  rows.flush();
  deletions_.reset();
}

Imported Import::run() {
  gather();
  writeTitles();
  tell("writing episodes", kReadingShare + kTitlesShare);
  writeSeasons();
  tell("writing people", kReadingShare + kTitlesShare);
  writePeople();
  writeIdents();
  tell("sorting names", kReadingShare + kTitlesShare * 2);
  writeNames();
  writeExact();
  tell("writing words", kReadingShare + kTitlesShare * 3);
  writeWords();
  writeDeletions();
  store_->meta("version", std::to_string(kVersion));
  store_->meta("date", sets_.date());
  store_->meta("titles", std::to_string(result_.titles));
  store_->meta("episodes", std::to_string(result_.episodes));
  store_->meta("names", std::to_string(result_.names));
  store_->meta("words", std::to_string(result_.words));
  store_->meta("people", std::to_string(result_.people));
  tell("checking", 0.97);
  result_.place = store_->place();
  store_->finish();
  tell("done", 1);
  return std::move(result_);
}

}  // namespace

std::string folderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

std::string temporaryFolder(const ImportOptions& options) {
  if (!isServer(options.to)) {
    return folderOf(options.to);
  }
  const char* const named = std::getenv("TMPDIR");
  return named != nullptr && *named != '\0' ? named : "/var/tmp";
}

Imported importCatalogue(const ImportOptions& options, const OnProgress& progress) {
  mallopt(M_MMAP_THRESHOLD, 1 << 19);  // what a sorter gives back goes back to the system
  return Import(options, progress).run();
}

}  // namespace quilp::catalogue
