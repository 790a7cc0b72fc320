#include "http_cache.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <thread>
#include <utility>

#include "pace.h"
#include "shared_folder.h"

namespace quilp::kit {
namespace {

constexpr int kApplication = 0x51484331;
constexpr int kVersion = 1;
constexpr int kTries = 10;
constexpr Milliseconds kTryAgain{20};
constexpr int kBusyMilliseconds = 2000;
constexpr int kPageSize = 4096;
constexpr Seconds kUsedStep = 3600;                // how exactly the last use is known
constexpr Seconds kOldest = Seconds{180} * 86400;  // services do not want to be copied for longer
constexpr std::size_t kLargestEntry = std::size_t{20} << 20;

void addNumber(std::string& bytes, std::int64_t number) {
  for (int i = 0; i < 8; ++i, number >>= 8) {
    bytes += static_cast<char>(number & 0xFF);
  }
}

void addText(std::string& bytes, const std::string& text) {
  addNumber(bytes, static_cast<std::int64_t>(text.size()));
  bytes += text;
}

/// Takes values from the front. After a value that is not whole, all are empty.
class Reader {
 public:
  explicit Reader(const std::string& bytes) : bytes_(bytes) {}

  std::int64_t number() {
    if (bytes_.size() - at_ < 8) {
      at_ = bytes_.size();
      return 0;
    }
    std::uint64_t number = 0;
    for (int i = 0; i < 8; ++i) {
      number |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes_[at_++])) << (8 * i);
    }
    return static_cast<std::int64_t>(number);
  }

  std::string text() {
    const auto size = static_cast<std::uint64_t>(number());
    std::string text =
        bytes_.substr(at_, size > bytes_.size() ? 0 : static_cast<std::size_t>(size));
    at_ += text.size();
    return text;
  }

 private:
  const std::string& bytes_;
  std::size_t at_ = 0;
};

/// The whole answer in one checked block, so that no damage goes unseen.
std::string packed(const std::string& key, const StoredAnswer& answer) {
  std::string bytes;
  addText(bytes, key);
  addNumber(bytes, answer.isFound ? 1 : 0);
  addNumber(bytes, answer.stored);
  addNumber(bytes, answer.freshUntil);
  addText(bytes, answer.tag);
  addText(bytes, answer.modified);
  addText(bytes, answer.body);
  std::string block;
  addNumber(block, static_cast<std::int64_t>(bytes.size()));
  uLongf size = compressBound(static_cast<uLong>(bytes.size()));
  block.resize(8 + size);
  if (compress2(reinterpret_cast<Bytef*>(block.data() + 8), &size,
                reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()),
                1) != Z_OK) {
    return "";
  }
  block.resize(8 + size);
  return block;
}

std::optional<StoredAnswer> unpacked(const std::string& key, const std::string& block) {
  const auto stored = static_cast<std::uint64_t>(Reader(block).number());
  if (block.size() < 8 || stored > kLargestEntry) {
    return std::nullopt;
  }
  std::string bytes(static_cast<std::size_t>(stored), '\0');
  auto size = static_cast<uLongf>(stored);
  if (uncompress(reinterpret_cast<Bytef*>(bytes.data()), &size,
                 reinterpret_cast<const Bytef*>(block.data() + 8),
                 static_cast<uLong>(block.size() - 8)) != Z_OK ||
      size != stored) {
    return std::nullopt;
  }
  Reader from(bytes);
  if (from.text() != key) {
    return std::nullopt;
  }
  StoredAnswer answer;
  answer.isFound = from.number() != 0;
  answer.stored = from.number();
  answer.freshUntil = from.number();
  answer.tag = from.text();
  answer.modified = from.text();
  answer.body = from.text();
  return answer;
}

}  // namespace

HttpCache::HttpCache(std::string path, std::int64_t largestSize)
    : path_(std::move(path)), largestSize_(largestSize) {
  if (!open()) {
    database_.reset();
  }
}

bool HttpCache::open() {
  const std::string folder = path_.substr(0, path_.rfind('/'));
  mkdir(folder.c_str(), 0755);  // fails if it is there
  const int file = ::open(path_.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
  shareFile(file, folder);  // its log is made with the same permissions
  close(file);
  struct stat status {};
  if (lstat(path_.c_str(), &status) == 0 &&
      (!S_ISREG(status.st_mode) || status.st_nlink != 1 ||
       (status.st_uid != geteuid() && status.st_uid != 0 && !isShared(folder)))) {
    return false;
  }
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(
      path_.c_str(), &opened,
      SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_NOFOLLOW,
      nullptr);
  database_.reset(opened);
  if (result != SQLITE_OK) {
    return false;
  }
  sqlite3_busy_timeout(opened, kBusyMilliseconds);
  // A process that only reads leaves the log as it is: it ends sooner.
  sqlite3_db_config(opened, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  int keep = 1;
  sqlite3_file_control(opened, nullptr, SQLITE_FCNTL_PERSIST_WAL, &keep);
  return isOurs() && run("PRAGMA synchronous=NORMAL; PRAGMA journal_size_limit=1048576;"
                         "PRAGMA max_page_count=" +
                         std::to_string(largestSize_ / kPageSize));
}

/// True for a file that was made here. An empty one becomes one; many processes may try that at
/// once.
bool HttpCache::isOurs() {
  for (int tries = 0; tries < kTries; ++tries) {
    const std::int64_t application = number("PRAGMA application_id");
    if (application == kApplication && number("PRAGMA user_version") == kVersion) {
      return true;
    }
    if (application == kApplication) {
      empty();
    } else if (application > 0) {
      return false;
    }
    const bool isEmpty = number("SELECT count(*) FROM sqlite_schema") == 0;
    const bool isMade =
        isEmpty && run("PRAGMA journal_mode=WAL; BEGIN IMMEDIATE;"
                       "CREATE TABLE IF NOT EXISTS answer"
                       " (key TEXT PRIMARY KEY, used INTEGER, size INTEGER, block BLOB);"
                       "CREATE INDEX IF NOT EXISTS answer_used ON answer (used, size);"
                       "PRAGMA application_id=" +
                       std::to_string(kApplication) +
                       "; PRAGMA user_version=" + std::to_string(kVersion) + "; COMMIT");
    if (!isMade) {
      std::this_thread::sleep_for(jittered(kTryAgain));
    }
  }
  return false;
}

/// Empties a file that is damaged. If the log is missing it is none that was made here.
void HttpCache::judge(int result) {
  const int primary = result & 0xFF;
  if ((primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB) &&
      access((path_ + "-wal").c_str(), F_OK) == 0) {
    empty();
  }
}

/// Other processes may go on using the file.
void HttpCache::empty() {
  sqlite3* const database = database_.get();
  sqlite3_exec(database, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_RESET_DATABASE, 1, nullptr);
  sqlite3_exec(database, "VACUUM", nullptr, nullptr, nullptr);
  sqlite3_db_config(database, SQLITE_DBCONFIG_RESET_DATABASE, 0, nullptr);
}

bool HttpCache::run(const std::string& sql) {
  if (!database_) {
    return false;
  }
  const int result = sqlite3_exec(database_.get(), sql.c_str(), nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) {
    sqlite3_exec(database_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    judge(result);
  }
  return result == SQLITE_OK;
}

HttpCache::Statement HttpCache::prepare(const char* sql, const std::string& key) {
  sqlite3_stmt* prepared = nullptr;
  const int result =
      database_ ? sqlite3_prepare_v2(database_.get(), sql, -1, &prepared, nullptr) : SQLITE_MISUSE;
  if (result != SQLITE_OK) {
    judge(result);
    return nullptr;
  }
  if (sqlite3_bind_parameter_count(prepared) > 0) {
    sqlite3_bind_text(prepared, 1, key.data(), static_cast<int>(key.size()), SQLITE_TRANSIENT);
  }
  return Statement(prepared);
}

bool HttpCache::step(sqlite3_stmt* statement) {
  const int result = sqlite3_step(statement);
  if (result != SQLITE_ROW && result != SQLITE_DONE) {
    judge(result);
  }
  return result == SQLITE_ROW;
}

/// The first column of the first row; -1 if there is an error.
std::int64_t HttpCache::number(const char* sql) {
  const Statement statement = prepare(sql, "");
  return statement && step(statement.get()) ? sqlite3_column_int64(statement.get(), 0) : -1;
}

std::optional<StoredAnswer> HttpCache::find(const std::string& key) {
  const Statement statement = prepare("SELECT block, used FROM answer WHERE key = ?1", key);
  if (!statement || !step(statement.get())) {
    return std::nullopt;
  }
  const void* const block = sqlite3_column_blob(statement.get(), 0);
  const int size = sqlite3_column_bytes(statement.get(), 0);
  std::optional<StoredAnswer> answer = unpacked(
      key, block == nullptr
               ? ""
               : std::string(static_cast<const char*>(block), static_cast<std::size_t>(size)));
  const Seconds now = secondsNow();
  if (!answer || answer->stored < now - kOldest) {
    return std::nullopt;
  }
  if (sqlite3_column_int64(statement.get(), 1) < now - kUsedStep) {
    sqlite3_reset(statement.get());
    if (const Statement update = prepare("UPDATE answer SET used = ?2 WHERE key = ?1", key)) {
      sqlite3_bind_int64(update.get(), 2, now);
      step(update.get());
    }
  }
  return answer;
}

/// A file that turned out to be damaged is empty, without a table: it is made again.
void HttpCache::store(const std::string& key, const StoredAnswer& answer) {
  const std::string block = packed(key, answer);
  if (block.empty() || static_cast<std::int64_t>(block.size() + key.size()) > largestSize_ / 4) {
    remove(key);
    return;
  }
  if (!write(key, block) && database_ && isOurs()) {
    write(key, block);
  }
}

bool HttpCache::write(const std::string& key, const std::string& block) {
  const auto size = static_cast<std::int64_t>(block.size() + key.size());
  if (!run("BEGIN IMMEDIATE")) {
    return false;
  }
  bool isWritten = makeRoom(size);
  if (isWritten) {
    const Statement statement =
        prepare("REPLACE INTO answer (key, used, size, block) VALUES (?1, ?2, ?3, ?4)", key);
    if (statement) {
      sqlite3_bind_int64(statement.get(), 2, secondsNow());
      sqlite3_bind_int64(statement.get(), 3, size);
      sqlite3_bind_blob(statement.get(), 4, block.data(), static_cast<int>(block.size()),
                        SQLITE_STATIC);
    }
    const int result = statement ? sqlite3_step(statement.get()) : SQLITE_ERROR;
    isWritten = result == SQLITE_DONE;
    if (statement && !isWritten) {
      sqlite3_reset(statement.get());  // a file in use cannot be emptied
      judge(result);
    }
  }
  return run(isWritten ? "COMMIT" : "ROLLBACK") && isWritten;
}

/// Removes what is too old, and then what was not used for longest. Returns false for a damaged
/// file.
bool HttpCache::makeRoom(std::int64_t room) {
  if (!run("DELETE FROM answer WHERE used < " + std::to_string(secondsNow() - kOldest))) {
    return false;
  }
  // What is not used of pages, and the index, need room, too.
  const std::int64_t most = largestSize_ / 4 * 3 - room;
  while (number("SELECT total(size) FROM answer") > most) {
    if (!run("DELETE FROM answer WHERE key IN"
             " (SELECT key FROM answer ORDER BY used, rowid LIMIT (SELECT count(*) / 8 + 1 FROM "
             "answer))")) {
      return false;
    }
    if (sqlite3_changes(database_.get()) == 0) {  // the index tells of rows that there are not
      empty();
      return false;
    }
  }
  return true;
}

void HttpCache::remove(const std::string& key) {
  if (const Statement statement = prepare("DELETE FROM answer WHERE key = ?1", key)) {
    step(statement.get());
  }
}

}  // namespace quilp::kit
