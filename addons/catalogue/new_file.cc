// A new catalogue file: SQLite.

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "database.h"
#include "import.h"
#include "new_store.h"

namespace quilp::catalogue {
namespace {

constexpr const char* kTables =
    "PRAGMA page_size = 8192;"
    "PRAGMA journal_mode = OFF;"
    "PRAGMA synchronous = OFF;"
    "PRAGMA cache_size = -4096;"
    "BEGIN;"
    "CREATE TABLE meta(k TEXT PRIMARY KEY, v TEXT) WITHOUT ROWID;"
    "CREATE TABLE title(k INTEGER PRIMARY KEY, v BLOB);"
    "CREATE TABLE person(k INTEGER PRIMARY KEY, v BLOB);"
    "CREATE TABLE season(k INTEGER PRIMARY KEY, v BLOB);"
    "CREATE TABLE ident(k INTEGER PRIMARY KEY, v BLOB);"
    "CREATE TABLE name(k INTEGER PRIMARY KEY, v BLOB);"
    "CREATE TABLE exact(k INTEGER PRIMARY KEY, v BLOB);"
    "CREATE TABLE word(text BLOB PRIMARY KEY, number INTEGER, names INTEGER) WITHOUT ROWID;"
    "CREATE TABLE posting(k INTEGER PRIMARY KEY, v BLOB);"
    "CREATE TABLE deletion(k INTEGER PRIMARY KEY, v BLOB);"
    "CREATE TABLE start(k INTEGER PRIMARY KEY, v BLOB);";

[[noreturn]] void failSystem(const std::string& path) {
  throw std::runtime_error(path + ": " + std::strerror(errno));
}

void syncPath(const std::string& path, int flags) {
  const int file = ::open(path.c_str(), flags | O_CLOEXEC);
  if (file < 0) {
    failSystem(path);
  }
  const int result = fsync(file);
  close(file);
  if (result != 0) {
    failSystem(path);
  }
}

class NewFile : public NewStore {
 public:
  explicit NewFile(const std::string& path);
  ~NewFile() override;

  void meta(std::string_view name, std::string_view value) override;
  void word(std::string_view text, const Word& word) override;
  void insert(const char* table, std::uint64_t key, std::string_view value) override;
  std::string place() const override { return path_; }
  void finish() override;

 private:
  void open();
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

NewFile::NewFile(const std::string& path) : path_(path), new_(path + ".new") {
  refuseSpecialFile(path);
  // One that a killed import left behind is written anew.
  lock_ = ::open(new_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
  if (lock_ < 0) {
    failSystem(new_);
  }
  if (flock(lock_, LOCK_EX | LOCK_NB) != 0) {
    close(lock_);
    throw std::runtime_error(new_ + ": another import is writing it");
  }
  struct stat held {};
  struct stat there {};
  if (fstat(lock_, &held) != 0 || stat(new_.c_str(), &there) != 0 || held.st_ino != there.st_ino) {
    close(lock_);  // the other import has just put it in place
    throw std::runtime_error(new_ + ": another import has just finished");
  }
  try {
    open();
  } catch (...) {
    unlink(new_.c_str());
    close(lock_);
    throw;
  }
}

void NewFile::open() {
  if (ftruncate(lock_, 0) != 0) {
    failSystem(new_);
  }
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(new_.c_str(), &opened,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, "unix-none");
  database_.reset(opened);
  if (result != SQLITE_OK) {
    fail(result);
  }
  run(kTables);
}

NewFile::~NewFile() {
  inserting_.reset();
  database_.reset();
  if (!new_.empty()) {
    unlink(new_.c_str());
  }
  close(lock_);
}

void NewFile::fail(int result) const {
  throw std::runtime_error(new_ + ": " + sqlite3_errstr(result));
}

void NewFile::run(const char* sql) {
  const int result = sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) {
    fail(result);
  }
}

sqlite3_stmt* NewFile::prepared(const char* sql) {
  if (table_ != sql) {
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v2(database_.get(), sql, -1, &statement, nullptr);
    inserting_.reset(statement);
    if (result != SQLITE_OK) {
      fail(result);
    }
    table_ = sql;
  }
  return inserting_.get();
}

void NewFile::done(sqlite3_stmt* statement) {
  const int result = sqlite3_step(statement);
  if (result != SQLITE_DONE) {
    fail(result);
  }
  sqlite3_reset(statement);
}

void NewFile::meta(std::string_view name, std::string_view value) {
  sqlite3_stmt* const row = prepared("INSERT INTO meta VALUES (?, ?)");
  sqlite3_bind_text(row, 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
  sqlite3_bind_text(row, 2, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
  done(row);
}

void NewFile::word(std::string_view text, const Word& word) {
  sqlite3_stmt* const row = prepared("INSERT INTO word VALUES (?, ?, ?)");
  sqlite3_bind_blob(row, 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  sqlite3_bind_int64(row, 2, word.number);
  sqlite3_bind_int64(row, 3, word.names);
  done(row);
}

void NewFile::insert(const char* table, std::uint64_t key, std::string_view value) {
  sqlite3_stmt* const row =
      prepared((std::string("INSERT INTO ") + table + " VALUES (?, ?)").c_str());
  sqlite3_bind_int64(row, 1, static_cast<sqlite3_int64>(key));
  sqlite3_bind_blob64(row, 2, value.data(), value.size(), SQLITE_STATIC);
  done(row);
}

void NewFile::finish() {
  run("COMMIT");
  Statement check;
  sqlite3_stmt* statement = nullptr;
  const int result =
      sqlite3_prepare_v2(database_.get(), "PRAGMA quick_check(1)", -1, &statement, nullptr);
  check.reset(statement);
  if (result != SQLITE_OK || sqlite3_step(statement) != SQLITE_ROW ||
      std::strcmp(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)), "ok") != 0) {
    throw std::runtime_error(new_ + ": the new file is damaged; is the disk sound?");
  }
  check.reset();
  inserting_.reset();
  database_.reset();
  syncPath(new_, O_RDONLY);
  if (rename(new_.c_str(), path_.c_str()) != 0) {
    failSystem(path_);
  }
  new_.clear();
  syncPath(folderOf(path_), O_RDONLY | O_DIRECTORY);
}

}  // namespace

std::unique_ptr<NewStore> newFile(const std::string& path) {
  return std::make_unique<NewFile>(path);
}

}  // namespace quilp::catalogue
