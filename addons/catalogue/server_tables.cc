// A catalogue on a PostgreSQL server.

#include <algorithm>
#include <set>

#include "bytes.h"
#include "data_set.h"
#include "server.h"
#include "tables.h"

namespace quilp::catalogue {
namespace {

constexpr unsigned kStatementSeconds = 5;
constexpr unsigned kAnswerSeconds = 7;

std::string arrayOf(const std::set<std::uint64_t>& keys) {
  std::string text;
  for (const std::uint64_t key : keys) {
    text += (text.empty() ? "{" : ",") + std::to_string(key);
  }
  return text + '}';
}

std::string arrayOf(const std::set<std::string>& texts) {
  std::string text;
  for (const std::string& each : texts) {
    text += (text.empty() ? "{\"\\" : ",\"\\") + hexOf(each) + '"';
  }
  return text + '}';
}

Word wordIn(const Server::Row& row) {
  return {static_cast<std::uint32_t>(numberIn(row[1])),
          static_cast<std::uint32_t>(numberIn(row[2]))};
}

/// Keeps what was read: what is wanted is collected, and asked for in one round trip when the first
/// of it is needed. No statement is prepared: a pool of connections may give the next one to
/// another connection, and most programs ask each only once.
class ServerTables : public Tables {
 public:
  explicit ServerTables(const std::string& address);
  ~ServerTables() override;

  std::string place() override { return server_.place(); }
  std::map<std::string, std::string> meta() override { return meta_; }
  std::uint64_t bytes() override;
  std::optional<std::string> row(const char* table, std::uint64_t key) override;
  std::string rowStart(const char* table, std::uint64_t key, std::size_t limit) override;
  std::vector<std::uint64_t> keys(const char* table, std::uint64_t first,
                                  std::uint64_t end) override;
  std::optional<Word> word(std::string_view text) override;
  std::vector<FoundWord> wordsFrom(std::string_view prefix, std::size_t limit) override;
  void prefetch(const char* table, const Keys& keys) override { want({table, 0}, keys); }
  void prefetchStarts(const char* table, const Keys& keys, std::size_t limit) override {
    want({table, limit}, keys);
  }
  void prefetchWords(const Texts& texts) override;

 private:
  using Part = std::pair<std::string, std::size_t>;  // a table, and how much of each row; 0: all
  using Kept = std::map<std::uint64_t, std::optional<std::string>>;

  std::string in(const std::string& table) const { return schema_ + '.' + table; }
  void want(const Part& part, const Keys& keys);
  const std::optional<std::string>& get(const Part& part, std::uint64_t key);
  void fetchWanted();

  Server server_;
  std::string schema_;
  std::map<std::string, std::string> meta_;
  std::map<Part, Kept> rows_;
  std::map<std::string, std::optional<Word>, std::less<>> words_;
  std::map<Part, std::set<std::uint64_t>> wantedRows_;
  std::set<std::string> wantedWords_;
};

ServerTables::ServerTables(const std::string& address) : server_(address, kAnswerSeconds) {
  const std::string table = kDataSets;
  try {
    // A setting of the transaction alone: a pool gives the connection to others afterwards.
    const Server::Rows rows =
        server_.run("BEGIN READ ONLY; SET LOCAL statement_timeout = '" +
                    std::to_string(kStatementSeconds) + "s'; SELECT number, name, value FROM " +
                    table + " WHERE number = (SELECT max(number) FROM " + table + ")");
    for (const Server::Row& row : rows) {
      schema_ = schemaOf(row[0]);
      meta_[row[1]] = row[2];
    }
  } catch (const ServerError& error) {
    if (error.state() != "42P01" && error.state() != "3F000") {  // no such table, no such schema
      throw;
    }
  }
  if (meta_.empty()) {
    throw ServerError("", "there is no catalogue on " + server_.place() + "; import one");
  }
}

/// A pool gives a connection to the next program only after the end of the transaction.
ServerTables::~ServerTables() {
  if (server_.isSound()) {
    try {
      server_.run("COMMIT");
    } catch (const std::exception&) {  // the answers are there already
      return;
    }
  }
}

std::uint64_t ServerTables::bytes() {
  return numberIn(server_
                      .ask({{"SELECT coalesce(sum(pg_total_relation_size(c.oid)), 0)::bigint FROM "
                             "pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace WHERE "
                             "c.relkind = 'r' AND n.nspname = $1::text",
                             schema_}})
                      .front()
                      .front()
                      .front());
}

void ServerTables::want(const Part& part, const Keys& keys) {
  const Kept& kept = rows_[part];
  std::set<std::uint64_t>& wanted = wantedRows_[part];
  std::copy_if(keys.begin(), keys.end(), std::inserter(wanted, wanted.end()),
               [&](std::uint64_t key) { return kept.count(key) == 0; });
}

void ServerTables::prefetchWords(const Texts& texts) {
  std::copy_if(texts.begin(), texts.end(), std::inserter(wantedWords_, wantedWords_.end()),
               [&](const std::string& text) { return words_.count(text) == 0; });
}

void ServerTables::fetchWanted() {
  std::vector<Server::Query> queries;
  std::vector<Kept*> into;
  for (const auto& [part, keys] : wantedRows_) {
    const auto& [table, limit] = part;
    if (!keys.empty()) {
      const std::string value =
          limit == 0 ? "v" : "substring(v FROM 1 FOR " + std::to_string(limit) + ')';
      queries.push_back(
          {"SELECT k, " + value + " FROM " + in(table) + " WHERE k = ANY($1::bigint[])",
           arrayOf(keys)});
      into.push_back(&rows_[part]);
      for (const std::uint64_t key : keys) {
        (*into.back())[key] = std::nullopt;
      }
    }
  }
  if (!wantedWords_.empty()) {
    queries.push_back(
        {"SELECT text, number, names FROM " + in("word") + " WHERE text = ANY($1::bytea[])",
         arrayOf(wantedWords_)});
    for (const std::string& text : wantedWords_) {
      words_[text] = std::nullopt;
    }
  }
  const std::vector<Server::Rows> answers = server_.ask(queries);
  for (std::size_t i = 0; i < answers.size(); ++i) {
    for (const Server::Row& row : answers[i]) {
      if (i < into.size()) {
        (*into[i])[numberIn(row[0])] = row[1];
      } else {
        words_[row[0]] = wordIn(row);
      }
    }
  }
  wantedRows_.clear();
  wantedWords_.clear();
}

const std::optional<std::string>& ServerTables::get(const Part& part, std::uint64_t key) {
  Kept& kept = rows_[part];
  if (kept.count(key) == 0) {
    want(part, {key});
    fetchWanted();
  }
  return kept[key];
}

std::optional<std::string> ServerTables::row(const char* table, std::uint64_t key) {
  return get({table, 0}, key);
}

std::string ServerTables::rowStart(const char* table, std::uint64_t key, std::size_t limit) {
  const std::optional<std::string>& start = get({table, limit}, key);
  if (!start) {
    throw Damaged(std::string("no such row in ") + table);
  }
  return *start;
}

std::vector<std::uint64_t> ServerTables::keys(const char* table, std::uint64_t first,
                                              std::uint64_t end) {
  std::vector<std::uint64_t> keys;
  const std::vector<Server::Rows> answers =
      server_.ask({{"SELECT k FROM " + in(table) + " WHERE k >= " + std::to_string(first) +
                    " AND k < " + std::to_string(end) + " ORDER BY k"}});
  for (const Server::Row& row : answers.front()) {
    keys.push_back(numberIn(row[0]));
  }
  return keys;
}

std::optional<Word> ServerTables::word(std::string_view text) {
  auto found = words_.find(text);
  if (found == words_.end()) {
    found = words_.emplace(text, std::nullopt).first;
    wantedWords_.emplace(text);
    fetchWanted();
  }
  return found->second;
}

std::vector<FoundWord> ServerTables::wordsFrom(std::string_view prefix, std::size_t limit) {
  std::vector<FoundWord> found;
  const std::vector<Server::Rows> answers =
      server_.ask({{"SELECT text, number, names FROM " + in("word") +
                        " WHERE text >= $1::bytea ORDER BY text LIMIT " + std::to_string(limit),
                    hexOf(prefix)}});
  for (const Server::Row& row : answers.front()) {
    if (row[0].compare(0, prefix.size(), prefix) != 0) {
      break;
    }
    found.push_back({row[0], wordIn(row)});
  }
  return found;
}

}  // namespace

std::unique_ptr<Tables> openServer(const std::string& address) {
  return std::make_unique<ServerTables>(address);
}

}  // namespace quilp::catalogue
