#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store.h"

namespace quilp::catalogue {

/// A catalogue file that is being written beside the one in use. It takes that one's place in
/// finish(); without that it is removed. Throws std::runtime_error, also where another import runs.
class NewStore {
 public:
  explicit NewStore(const std::string& path);
  ~NewStore();
  NewStore(const NewStore&) = delete;
  NewStore& operator=(const NewStore&) = delete;

  void meta(std::string_view name, std::string_view value);
  void word(std::string_view text, const Word& word);

  /// Keys of one table must ascend; its rows are written one after another.
  void insert(const char* table, std::uint64_t key, std::string_view value);

  /// Writes all to the disk, checks the file, and puts it in place.
  void finish();

 private:
  void run(const char* sql);
  sqlite3_stmt* prepared(const char* sql);
  void done(sqlite3_stmt* statement);
  [[noreturn]] void fail(int result) const;

  std::string path_;
  std::string new_;
  int lock_ = -1;
  Database database_;
  std::string table_;
  Statement inserting_;
};

}  // namespace quilp::catalogue
