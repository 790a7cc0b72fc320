#pragma once

#include <sqlite3.h>

#include <memory>
#include <optional>
#include <string>

#include "freshness.h"

namespace quilp::kit {

/// A stored answer.
struct StoredAnswer {
  bool isFound = false;
  Seconds stored = 0;  // when it came, or was confirmed
  Seconds freshUntil = 0;
  std::string tag{};       // ETag
  std::string modified{};  // Last-Modified
  std::string body{};
};

/// The answers that all processes of the machine share, in one SQLite file. Without a usable file
/// there are none: a damaged file is emptied, and no error is reported.
class HttpCache {
 public:
  /// A file of another user than root is not used, unless it is in a folder that a group shares.
  HttpCache(std::string path, std::int64_t largestSize);

  std::optional<StoredAnswer> find(const std::string& key);
  void store(const std::string& key, const StoredAnswer& answer);
  void remove(const std::string& key);

 private:
  struct Close {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Close>;

  bool open();
  bool isOurs();
  bool run(const std::string& sql);
  Statement prepare(const char* sql, const std::string& key);
  std::int64_t number(const char* sql);
  bool step(sqlite3_stmt* statement);
  void judge(int result);
  void empty();
  bool write(const std::string& key, const std::string& block);
  bool makeRoom(std::int64_t room);

  std::string path_;
  std::int64_t largestSize_;
  std::unique_ptr<sqlite3, Close> database_;
};

}  // namespace quilp::kit
