// A catalogue file: SQLite.

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include "bytes.h"
#include "database.h"
#include "tables.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kMostWords = 256;

std::string_view blobOf(sqlite3_stmt* statement, int column) {
  const void* const bytes = sqlite3_column_blob(statement, column);
  const int size = sqlite3_column_bytes(statement, column);
  return bytes == nullptr
             ? std::string_view()
             : std::string_view(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

/// Percent-encoded: the name of a file as SQLite's addresses take it.
std::string addressOf(const std::string& path) {
  std::string address = "file:";
  for (const char c : path) {
    if (c == '%' || c == '?' || c == '#') {
      address += '%';
      address += "0123456789ABCDEF"[static_cast<unsigned char>(c) >> 4];
      address += "0123456789ABCDEF"[static_cast<unsigned char>(c) & 15];
    } else {
      address += c;
    }
  }
  return address + "?immutable=1";
}

class FileTables : public Tables {
 public:
  explicit FileTables(const std::string& path);

  std::string place() override { return path_; }
  std::map<std::string, std::string> meta() override;
  std::uint64_t bytes() override;
  std::optional<std::string> row(const char* table, std::uint64_t key) override;
  std::string rowStart(const char* table, std::uint64_t key, std::size_t limit) override;
  std::vector<std::uint64_t> keys(const char* table, std::uint64_t first,
                                  std::uint64_t end) override;
  std::optional<Word> word(std::string_view text) override;
  std::vector<FoundWord> wordsFrom(std::string_view prefix, std::size_t limit) override;

 private:
  sqlite3_stmt* statement(const std::string& sql);
  bool step(sqlite3_stmt* statement);

  std::string path_;
  Database database_;
  std::map<std::string, Statement> statements_;
};

FileTables::FileTables(const std::string& path) : path_(path) {
  if (access(path.c_str(), R_OK) != 0) {
    const std::string hint =
        errno == ENOENT ? "; \"quilp catalogue import\" makes the catalogue" : "";
    throw std::runtime_error(path + ": " + std::strerror(errno) + hint);
  }
  refuseSpecialFile(path);  // a FIFO would be waited for
  sqlite3* opened = nullptr;
  const int result =
      sqlite3_open_v2(addressOf(path).c_str(), &opened,
                      SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(opened);
  if (result != SQLITE_OK) {
    throw std::runtime_error(path + ": " + sqlite3_errstr(result));
  }
}

std::map<std::string, std::string> FileTables::meta() {
  std::map<std::string, std::string> meta;
  sqlite3_stmt* const rows = statement("SELECT k, v FROM meta");
  while (step(rows)) {
    meta[std::string(blobOf(rows, 0))] = std::string(blobOf(rows, 1));
  }
  sqlite3_reset(rows);
  return meta;
}

std::uint64_t FileTables::bytes() {
  struct stat status {};
  return stat(path_.c_str(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

sqlite3_stmt* FileTables::statement(const std::string& sql) {
  Statement& held = statements_[sql];
  if (!held) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &prepared, nullptr) != SQLITE_OK) {
      throw Damaged(sqlite3_errmsg(database_.get()));
    }
    held.reset(prepared);
  }
  sqlite3_reset(held.get());
  return held.get();
}

bool FileTables::step(sqlite3_stmt* statement) {
  const int result = sqlite3_step(statement);
  if (result != SQLITE_ROW && result != SQLITE_DONE) {
    throw Damaged(sqlite3_errmsg(database_.get()));
  }
  return result == SQLITE_ROW;
}

std::optional<std::string> FileTables::row(const char* table, std::uint64_t key) {
  sqlite3_stmt* const rows = statement(std::string("SELECT v FROM ") + table + " WHERE k = ?");
  sqlite3_bind_int64(rows, 1, static_cast<sqlite3_int64>(key));
  if (!step(rows)) {
    return std::nullopt;
  }
  std::string value(blobOf(rows, 0));
  sqlite3_reset(rows);
  return value;
}

std::string FileTables::rowStart(const char* table, std::uint64_t key, std::size_t limit) {
  sqlite3_blob* blob = nullptr;
  if (sqlite3_blob_open(database_.get(), "main", table, "v", static_cast<sqlite3_int64>(key), 0,
                        &blob) != SQLITE_OK) {
    sqlite3_blob_close(blob);
    throw Damaged(std::string("no such row in ") + table);
  }
  std::string value(std::min(limit, static_cast<std::size_t>(sqlite3_blob_bytes(blob))), '\0');
  const int result = sqlite3_blob_read(blob, value.data(), static_cast<int>(value.size()), 0);
  sqlite3_blob_close(blob);
  if (result != SQLITE_OK) {
    throw Damaged(sqlite3_errmsg(database_.get()));
  }
  return value;
}

std::vector<std::uint64_t> FileTables::keys(const char* table, std::uint64_t first,
                                            std::uint64_t end) {
  sqlite3_stmt* const rows =
      statement(std::string("SELECT k FROM ") + table + " WHERE k >= ? AND k < ? ORDER BY k");
  sqlite3_bind_int64(rows, 1, static_cast<sqlite3_int64>(first));
  sqlite3_bind_int64(rows, 2, static_cast<sqlite3_int64>(end));
  std::vector<std::uint64_t> keys;
  while (keys.size() < end - first && step(rows)) {
    keys.push_back(static_cast<std::uint64_t>(sqlite3_column_int64(rows, 0)));
  }
  sqlite3_reset(rows);
  return keys;
}

std::optional<Word> FileTables::word(std::string_view text) {
  sqlite3_stmt* const rows = statement("SELECT number, names FROM word WHERE text = ?");
  sqlite3_bind_blob(rows, 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  if (!step(rows)) {
    return std::nullopt;
  }
  const Word word = {static_cast<std::uint32_t>(sqlite3_column_int64(rows, 0)),
                     static_cast<std::uint32_t>(sqlite3_column_int64(rows, 1))};
  sqlite3_reset(rows);
  return word;
}

std::vector<FoundWord> FileTables::wordsFrom(std::string_view prefix, std::size_t limit) {
  sqlite3_stmt* const rows =
      statement("SELECT text, number, names FROM word WHERE text >= ? ORDER BY text");
  sqlite3_bind_blob(rows, 1, prefix.data(), static_cast<int>(prefix.size()), SQLITE_STATIC);
  std::vector<FoundWord> found;
  while (found.size() < std::min(limit, kMostWords) && step(rows)) {
    const std::string_view text = blobOf(rows, 0);
    if (text.substr(0, prefix.size()) != prefix) {
      break;
    }
    found.push_back({std::string(text),
                     {static_cast<std::uint32_t>(sqlite3_column_int64(rows, 1)),
                      static_cast<std::uint32_t>(sqlite3_column_int64(rows, 2))}});
  }
  sqlite3_reset(rows);
  return found;
}

}  // namespace

std::unique_ptr<Tables> openFile(const std::string& path) {
  return std::make_unique<FileTables>(path);
}

}  // namespace quilp::catalogue
