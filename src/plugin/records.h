#pragma once

#include <cstdlib>
#include <utility>

#include "plugin/reason.h"
#include "plugin/record_table.h"

// Ownership of the records of a lookup, and its transfer to the caller.

namespace libquilp {

template <class Record>
void freeRecords(Table<Record> table, Record* records, int count) {
  if (records == nullptr) {
    return;
  }
  for (int i = 0; i < count; ++i) {
    freeTexts(table, records[i]);
  }
  std::free(records);
}

/// A record that releases its strings in the destructor.
template <class Record, void (*Free)(Record*)>
struct Owned : Record {
  Owned() : Record() {}
  ~Owned() { Free(this); }
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
};

/// An array of records that the destructor releases, unless it was handed over.
template <class Record>
class RecordArray {
 public:
  using Release = void (*)(Record*, int);

  RecordArray() = default;
  /// Allocates zeroed records, at least one; false out of memory.
  RecordArray(Release release, int capacity)
      : release_(release),
        records_(static_cast<Record*>(
            std::calloc(capacity > 0 ? static_cast<std::size_t>(capacity) : 1, sizeof(Record)))) {}
  RecordArray(RecordArray&& other) noexcept { *this = std::move(other); }
  RecordArray& operator=(RecordArray&& other) noexcept {
    std::swap(release_, other.release_);
    std::swap(records_, other.records_);
    std::swap(count_, other.count_);
    return *this;
  }
  ~RecordArray() {
    if (release_ != nullptr) {
      release_(records_, count_);
    }
  }

  explicit operator bool() const { return records_ != nullptr; }
  int count() const { return count_; }
  const Record* begin() const { return records_; }
  const Record* end() const { return records_ + count_; }
  Record* data() { return records_; }
  /// The next record. Requires count() < capacity.
  Record& add() { return records_[count_++]; }

  /// Stores the array, or null out of memory; stores nothing if there never was an array.
  void giveTo(Record** records) {
    if (release_ != nullptr) {
      *records = std::exchange(records_, nullptr);
      count_ = 0;
    }
  }

 private:
  Release release_ = nullptr;
  Record* records_ = nullptr;
  int count_ = 0;
};

/// What a search found.
template <class Record>
struct Found {
  Found() = default;
  /// All records of the array.
  explicit Found(RecordArray<Record> array) : records(std::move(array)), count(records.count()) {}

  RecordArray<Record> records;
  int count = 0;  // the caller's result, which may differ from the number of records
  Reason reason = Reason::kOk;

  /// Stores the array and returns the caller's result.
  int giveTo(Record** place) {
    records.giveTo(place);
    return count;
  }
};

/// The outcome of filling one record.
struct Outcome {
  int status = 0;               // the caller's result
  Reason reason = Reason::kOk;  // if nothing was filled
};

/// Reads a list document: one record for each child `entry` of `root`, filled by read(child,
/// record).
template <class Record, class Read>
Found<Record> readRecords(const XMLNode& root, const char* entry, void (*release)(Record*, int),
                          Read read) {
  RecordArray<Record> array(release, root.nChildNode(entry));
  if (array) {
    root.forEachChild(entry, [&](const XMLNode& element) { read(element, array.add()); });
  }
  return Found<Record>(std::move(array));
}

}  // namespace libquilp
