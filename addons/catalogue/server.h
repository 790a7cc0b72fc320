#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quilp::catalogue {

/// What went wrong with a server, in one sentence without a password.
class ServerError : public std::runtime_error {
 public:
  ServerError(const std::string& state, const std::string& text)
      : std::runtime_error("PostgreSQL: " + text), state_(state) {}

  /// An error of the server itself: its SQLSTATE, or else empty.
  const std::string& state() const { return state_; }

 private:
  std::string state_;
};

/// A connection to a PostgreSQL server. libpq is loaded for the first one. Throws ServerError.
class Server {
 public:
  /// Connects, within a few seconds. An answer must come within `seconds`; 0 waits for ever.
  Server(const std::string& address, unsigned seconds);
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  /// False after an error.
  bool isSound() const { return isSound_; }

  /// "HOST, database NAME".
  const std::string& place() const { return place_; }

  using Row = std::vector<std::string>;  // null is empty
  using Rows = std::vector<Row>;

  /// Statements; the rows of the last one, as text.
  Rows run(const std::string& sql);

  struct Query {
    std::string sql;
    std::string parameter{};  // $1; none if it is empty
  };

  /// Asks all of them in one round trip. Values are binary.
  std::vector<Rows> ask(const std::vector<Query>& queries);

  /// "COPY ... FROM STDIN", its bytes, and the number of rows that the server took.
  void startCopy(const std::string& sql);
  void copy(std::string_view bytes);
  std::uint64_t endCopy();

 private:
  class Result;

  void wait();
  Result next();
  [[noreturn]] void fail(const Result* result);

  void* connection_ = nullptr;
  int milliseconds_;
  bool isSound_ = true;
  std::string place_;
};

/// A value of type bigint, as ask() gives it.
std::uint64_t numberIn(const std::string& value);

/// "\x..." of bytes, as text of type bytea.
std::string hexOf(std::string_view bytes);

}  // namespace quilp::catalogue
