#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "title.h"

namespace quilp::catalogue {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

struct Season {
  unsigned number = 0;
  std::vector<Episode> episodes{};
};

/// What an identifier stands for.
struct Ident {
  bool isEpisode = false;
  std::uint32_t rank = 0;  // of a title
  std::uint32_t show = 0;  // of an episode: the show's identifier
  unsigned season = 0;
};

struct Word {
  std::uint32_t number = 0;
  std::uint32_t names = 0;  // how many have it
};

/// A catalogue file, for reading. Used by one thread at a time.
/// Throws Damaged, or std::runtime_error where there is no such file.
class Store {
 public:
  explicit Store(const std::string& path);

  const std::map<std::string, std::string>& meta() const { return meta_; }
  std::uint64_t metaNumber(const std::string& name) const;

  std::optional<std::string> row(const char* table, std::uint64_t key);

  /// The first bytes of a row, at most limit; and the row's size.
  std::string rowStart(const char* table, std::uint64_t key, std::size_t limit);

  Title title(std::uint32_t rank);
  std::string person(std::uint32_t number);
  std::optional<Season> season(std::uint32_t show, unsigned number);
  std::vector<unsigned> seasonsOf(std::uint32_t show);
  std::optional<Ident> ident(std::uint32_t id);
  std::optional<Word> word(std::string_view text);

  struct FoundWord {
    std::string text;
    Word word;
  };
  /// Words that begin with a prefix, at most limit.
  std::vector<FoundWord> wordsFrom(std::string_view prefix, std::size_t limit);

 private:
  sqlite3_stmt* statement(const std::string& sql);
  bool step(sqlite3_stmt* statement);

  Database database_;
  std::map<std::string, Statement> statements_;
  std::map<std::string, std::string> meta_;
};

/// Packs a block so that it takes less room, and unpacks it.
std::string deflated(std::string_view bytes);
std::string inflated(std::string_view bytes);

}  // namespace quilp::catalogue
