#include "store.h"

#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "bytes.h"
#include "layout.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kLargestBlock = std::size_t{1} << 26;
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

}  // namespace

std::string deflated(std::string_view bytes) {
  std::string out;
  Packer(out).number(bytes.size());
  const std::size_t head = out.size();
  uLongf size = compressBound(static_cast<uLong>(bytes.size()));
  out.resize(head + size);
  if (compress2(reinterpret_cast<Bytef*>(out.data() + head), &size,
                reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uLong>(bytes.size()),
                5) != Z_OK) {
    throw std::bad_alloc();
  }
  out.resize(head + size);
  return out;
}

std::string inflated(std::string_view bytes) {
  Unpacker from(bytes);
  const std::uint64_t stored = from.number();
  if (stored > kLargestBlock || stored > from.rest().size() * 1100 + 1024) {
    throw Damaged("a block's size is wrong");
  }
  std::string out(static_cast<std::size_t>(stored), '\0');
  auto size = static_cast<uLongf>(stored);
  if (uncompress(reinterpret_cast<Bytef*>(out.data()), &size,
                 reinterpret_cast<const Bytef*>(from.rest().data()),
                 static_cast<uLong>(from.rest().size())) != Z_OK ||
      size != stored) {
    throw Damaged("a block cannot be unpacked");
  }
  return out;
}

Store::Store(const std::string& path) {
  if (access(path.c_str(), R_OK) != 0) {
    throw std::runtime_error(path + ": " + std::strerror(errno));
  }
  sqlite3* opened = nullptr;
  const int result =
      sqlite3_open_v2(addressOf(path).c_str(), &opened,
                      SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
  database_.reset(opened);
  if (result != SQLITE_OK) {
    throw std::runtime_error(path + ": " + sqlite3_errstr(result));
  }
  sqlite3_stmt* const rows = statement("SELECT k, v FROM meta");
  while (step(rows)) {
    meta_[std::string(blobOf(rows, 0))] = std::string(blobOf(rows, 1));
  }
  sqlite3_reset(rows);
  if (metaNumber("version") != kVersion) {
    throw std::runtime_error(path + ": not a catalogue of this version; import it again");
  }
}

std::uint64_t Store::metaNumber(const std::string& name) const {
  const auto found = meta_.find(name);
  return found == meta_.end() ? 0 : std::strtoull(found->second.c_str(), nullptr, 10);
}

sqlite3_stmt* Store::statement(const std::string& sql) {
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

bool Store::step(sqlite3_stmt* statement) {
  const int result = sqlite3_step(statement);
  if (result != SQLITE_ROW && result != SQLITE_DONE) {
    throw Damaged(sqlite3_errmsg(database_.get()));
  }
  return result == SQLITE_ROW;
}

std::optional<std::string> Store::row(const char* table, std::uint64_t key) {
  sqlite3_stmt* const rows = statement(std::string("SELECT v FROM ") + table + " WHERE k = ?");
  sqlite3_bind_int64(rows, 1, static_cast<sqlite3_int64>(key));
  if (!step(rows)) {
    return std::nullopt;
  }
  std::string value(blobOf(rows, 0));
  sqlite3_reset(rows);
  return value;
}

std::string Store::rowStart(const char* table, std::uint64_t key, std::size_t limit) {
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

Title Store::title(std::uint32_t rank) {
  const auto packed = row("title", rank / kTitlesARow);
  if (!packed) {
    throw Damaged("a title is missing");
  }
  const std::string bytes = inflated(*packed);
  Unpacker from(bytes);
  for (unsigned skip = rank % kTitlesARow; skip > 0; --skip) {
    unpackTitle(from);
  }
  return unpackTitle(from);
}

std::string Store::person(std::uint32_t number) {
  const auto packed = row("person", number / kPeopleARow);
  if (!packed) {
    throw Damaged("a person is missing");
  }
  Unpacker from(*packed);
  for (unsigned skip = number % kPeopleARow; skip > 0; --skip) {
    from.text();
  }
  return std::string(from.text());
}

std::optional<Season> Store::season(std::uint32_t show, unsigned number) {
  if (number >= kSeasons) {
    return std::nullopt;
  }
  const auto packed = row("season", std::uint64_t{show} * kSeasons + number);
  if (!packed) {
    return std::nullopt;
  }
  const std::string bytes = inflated(*packed);
  Season season{number};
  for (Unpacker from(bytes); !from.atEnd();) {
    season.episodes.push_back(unpackEpisode(from));
  }
  return season;
}

std::vector<unsigned> Store::seasonsOf(std::uint32_t show) {
  sqlite3_stmt* const rows = statement("SELECT k FROM season WHERE k >= ? AND k < ? ORDER BY k");
  const sqlite3_int64 first = sqlite3_int64{show} * kSeasons;
  sqlite3_bind_int64(rows, 1, first);
  sqlite3_bind_int64(rows, 2, first + kSeasons);
  std::vector<unsigned> seasons;
  while (seasons.size() < kSeasons && step(rows)) {
    seasons.push_back(static_cast<unsigned>(sqlite3_column_int64(rows, 0) - first));
  }
  return seasons;
}

std::optional<Ident> Store::ident(std::uint32_t id) {
  const auto packed = row("ident", id / kIdentsARow);
  if (!packed) {
    return std::nullopt;
  }
  for (Unpacker from(*packed); !from.atEnd();) {
    const unsigned first = from.byte();
    Ident ident;
    ident.isEpisode = first >= kIdentsARow;
    (ident.isEpisode ? ident.show : ident.rank) = from.number32();
    ident.season = ident.isEpisode ? from.number32() : 0;
    if (first % kIdentsARow == id % kIdentsARow) {
      return ident;
    }
  }
  return std::nullopt;
}

std::optional<Word> Store::word(std::string_view text) {
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

std::vector<Store::FoundWord> Store::wordsFrom(std::string_view prefix, std::size_t limit) {
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

}  // namespace quilp::catalogue
