#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quilp::catalogue {

/// Sorts records by key, then by value, as bytes. What goes beyond the memory is sorted in runs in
/// temporary files of the folder, and merged. Throws std::system_error where a file fails.
class Sorter {
 public:
  /// memory: bytes. The folder must take files.
  Sorter(std::size_t memory, std::string folder);
  ~Sorter();
  Sorter(const Sorter&) = delete;
  Sorter& operator=(const Sorter&) = delete;

  void add(std::string_view key, std::string_view value);

  /// Ends adding; next() starts with the first record.
  void sort();

  /// False at the end. key() and value() are valid until the next call.
  bool next();
  std::string_view key() const { return key_; }
  std::string_view value() const { return value_; }

 private:
  struct Entry {
    std::uint64_t prefix;
    const char* record;
  };
  class Run;

  static bool less(const Entry& a, const Entry& b);
  char* room(std::size_t size);
  void sortEntries();
  void spill();

  std::size_t memory_;
  std::string folder_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::vector<std::unique_ptr<char[]>> large_;  // of a record each
  std::size_t usedBlocks_ = 0;
  std::size_t blockBytes_ = 0;
  char* free_ = nullptr;
  std::size_t freeBytes_ = 0;
  std::vector<Entry> entries_;
  std::size_t nextEntry_ = 0;
  std::vector<std::unique_ptr<Run>> runs_;  // a heap while merging
  std::string_view key_;
  std::string_view value_;
};

}  // namespace quilp::catalogue
