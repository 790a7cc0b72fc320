// A new data set on a PostgreSQL server. All of it is one transaction: until its end nobody sees
// anything of it, and where it does not come to its end the server leaves nothing.

#include <map>

#include "data_set.h"
#include "new_store.h"
#include "server.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kCopied = std::size_t{1} << 16;  // bytes sent at once
constexpr const char* kKeyed[] = {"title", "person",  "season",   "ident", "name",
                                  "exact", "posting", "deletion", "start"};

/// Rows in the format of "COPY ... (FORMAT binary)": numbers in network order.
class CopyRows {
 public:
  CopyRows() {
    bytes_.assign("PGCOPY\n\377\r\n\0", 11);
    integer(0, 4);  // flags
    integer(0, 4);  // bytes of more header
  }
  void row(unsigned columns) { integer(columns, 2); }
  void number(std::uint64_t value) {
    integer(8, 4);
    integer(value, 8);
  }
  void value(std::string_view value) {
    integer(value.size(), 4);
    bytes_ += value;
  }
  void end() { integer(0xffff, 2); }
  std::string& bytes() { return bytes_; }

 private:
  void integer(std::uint64_t value, int size) {
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8) {
      bytes_ += static_cast<char>(value >> shift);
    }
  }
  std::string bytes_;
};

class NewServerStore : public NewStore {
 public:
  explicit NewServerStore(const std::string& address);

  void meta(std::string_view name, std::string_view value) override {
    meta_[std::string(name)] = value;
  }
  void word(std::string_view text, const Word& word) override;
  void insert(const char* table, std::uint64_t key, std::string_view value) override;
  std::string place() const override { return server_.place(); }
  void finish() override;

 private:
  void begin();
  void removeOldDataSets();
  void createTables();
  CopyRows& rowsOf(const std::string& table);
  void rowIsWhole();
  void endTable();

  Server server_;
  std::string number_;
  std::string schema_;
  std::map<std::string, std::string> meta_;
  std::string table_;  // that rows are sent to
  CopyRows rows_;
  std::uint64_t sent_ = 0;
};

NewServerStore::NewServerStore(const std::string& address) : server_(address, 0) {
  begin();
  server_.run("CREATE SCHEMA IF NOT EXISTS quilp_catalogue; CREATE TABLE IF NOT EXISTS " +
              std::string(kDataSets) +
              "(number integer, name text, value text, PRIMARY KEY (number, name)); "
              "GRANT USAGE ON SCHEMA quilp_catalogue TO PUBLIC; GRANT SELECT ON " +
              kDataSets + " TO PUBLIC");
  removeOldDataSets();
  server_.run("COMMIT");
  begin();
  createTables();
}

void NewServerStore::begin() {
  // An index takes as long as it takes; but the server notices an import that was killed meanwhile.
  server_.run(
      "BEGIN; SET LOCAL statement_timeout = 0; SET LOCAL idle_in_transaction_session_timeout = 0; "
      "SET LOCAL lock_timeout = '60s'; SET LOCAL maintenance_work_mem = '128MB'; "
      "SET LOCAL client_connection_check_interval = '2s'");
  if (server_.run("SELECT pg_try_advisory_xact_lock(hashtext('quilp_catalogue'))")[0][0] != "t") {
    throw ServerError("", "another import writes to " + server_.place());
  }
}

/// All but the one in use.
void NewServerStore::removeOldDataSets() {
  const std::string table = kDataSets;
  const Server::Rows old =
      server_.run("DELETE FROM " + table + " WHERE number < (SELECT max(number) FROM " + table +
                  ") AND name = 'version' RETURNING number");
  for (const Server::Row& row : old) {
    std::string sql = "DELETE FROM " + table;
    sql += " WHERE number = " + row[0];
    sql += "; DROP SCHEMA IF EXISTS " + schemaOf(row[0]) + " CASCADE";
    server_.run(sql);
  }
}

void NewServerStore::createTables() {
  number_ = server_.run("SELECT coalesce(max(number), 0) + 1 FROM " + std::string(kDataSets))[0][0];
  schema_ = schemaOf(number_);
  std::string sql = "CREATE SCHEMA " + schema_ + "; GRANT USAGE ON SCHEMA " + schema_ +
                    " TO PUBLIC; CREATE TABLE " + schema_ +
                    ".word(text bytea, number bigint, names bigint)";
  for (const char* const table : kKeyed) {
    // Values are packed already; and the start of one is read without the rest.
    sql += "; CREATE TABLE " + schema_ + '.' + table + "(k bigint, v bytea); ALTER TABLE " +
           schema_ + '.' + table + " ALTER v SET STORAGE EXTERNAL";
  }
  server_.run(sql + "; GRANT SELECT ON ALL TABLES IN SCHEMA " + schema_ + " TO PUBLIC");
}

CopyRows& NewServerStore::rowsOf(const std::string& table) {
  if (table_ != table) {
    endTable();
    table_ = table;
    rows_ = CopyRows();
    sent_ = 0;
    server_.startCopy("COPY " + schema_ + '.' + table + " FROM STDIN (FORMAT binary, FREEZE)");
  }
  return rows_;
}

void NewServerStore::rowIsWhole() {
  ++sent_;
  if (rows_.bytes().size() >= kCopied) {
    server_.copy(rows_.bytes());
    rows_.bytes().clear();
  }
}

void NewServerStore::word(std::string_view text, const Word& word) {
  CopyRows& rows = rowsOf("word");
  rows.row(3);
  rows.value(text);
  rows.number(word.number);
  rows.number(word.names);
  rowIsWhole();
}

void NewServerStore::insert(const char* table, std::uint64_t key, std::string_view value) {
  CopyRows& rows = rowsOf(table);
  rows.row(2);
  rows.number(key);
  rows.value(value);
  rowIsWhole();
}

void NewServerStore::endTable() {
  if (!table_.empty()) {
    rows_.end();
    server_.copy(rows_.bytes());
    const std::uint64_t taken = server_.endCopy();
    if (taken != sent_) {
      throw ServerError("", "the server took " + std::to_string(taken) + " of " +
                                std::to_string(sent_) + " rows of " + table_);
    }
    table_.clear();
  }
}

void NewServerStore::finish() {
  endTable();
  // A key that is there twice fails here.
  server_.run("ALTER TABLE " + schema_ + ".word ADD PRIMARY KEY (text); ANALYZE " + schema_ +
              ".word");
  for (const char* const name : kKeyed) {
    std::string table = schema_;
    table.append(1, '.').append(name);
    std::string sql = "ALTER TABLE " + table;
    sql += " ADD PRIMARY KEY (k); ANALYZE " + table;
    sql += "(k)";
    server_.run(sql);
  }
  std::string values;
  for (const auto& [name, value] : meta_) {
    values += (values.empty() ? "(" : ", (") + number_ + ", convert_from('" + hexOf(name) +
              "', 'UTF8'), convert_from('" + hexOf(value) + "', 'UTF8'))";
  }
  server_.run("INSERT INTO " + std::string(kDataSets) + " VALUES " + values);
  server_.run("COMMIT");
}

}  // namespace

std::unique_ptr<NewStore> newOnServer(const std::string& address) {
  return std::make_unique<NewServerStore>(address);
}

}  // namespace quilp::catalogue
