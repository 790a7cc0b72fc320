#include "server.h"

#include <dlfcn.h>
#include <libpq-fe.h>
#include <poll.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>

namespace quilp::catalogue {
namespace {

/// The calls of libpq that are used.
struct Libpq {
  decltype(&PQconninfoParse) parse = nullptr;
  decltype(&PQconninfoFree) freeOptions = nullptr;
  decltype(&PQconnectdbParams) connect = nullptr;
  decltype(&PQfinish) finish = nullptr;
  decltype(&PQstatus) status = nullptr;
  decltype(&PQerrorMessage) errorMessage = nullptr;
  decltype(&PQsetNoticeProcessor) setNoticeProcessor = nullptr;
  decltype(&PQhost) host = nullptr;
  decltype(&PQdb) database = nullptr;
  decltype(&PQsocket) socket = nullptr;
  decltype(&PQsendQuery) sendQuery = nullptr;
  decltype(&PQsendQueryParams) sendQueryParams = nullptr;
  decltype(&PQenterPipelineMode) enterPipeline = nullptr;
  decltype(&PQexitPipelineMode) exitPipeline = nullptr;
  decltype(&PQpipelineSync) sync = nullptr;
  decltype(&PQconsumeInput) consumeInput = nullptr;
  decltype(&PQisBusy) isBusy = nullptr;
  decltype(&PQflush) flush = nullptr;
  decltype(&PQgetResult) getResult = nullptr;
  decltype(&PQclear) clear = nullptr;
  decltype(&PQresultStatus) resultStatus = nullptr;
  decltype(&PQresultErrorField) errorField = nullptr;
  decltype(&PQcmdTuples) affected = nullptr;
  decltype(&PQntuples) rows = nullptr;
  decltype(&PQnfields) columns = nullptr;
  decltype(&PQgetvalue) value = nullptr;
  decltype(&PQgetlength) length = nullptr;
  decltype(&PQputCopyData) putCopyData = nullptr;
  decltype(&PQputCopyEnd) putCopyEnd = nullptr;

  static const Libpq& get() {
    static const Libpq libpq;
    return libpq;
  }

 private:
  Libpq() {
    // Linked, it would cost every start of the program several milliseconds.
    void* const library = dlopen("libpq.so.5", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
      throw ServerError("", "libpq.so.5 cannot be loaded; is the package libpq5 installed?");
    }
    load(library, "PQconninfoParse", parse);
    load(library, "PQconninfoFree", freeOptions);
    load(library, "PQconnectdbParams", connect);
    load(library, "PQfinish", finish);
    load(library, "PQstatus", status);
    load(library, "PQerrorMessage", errorMessage);
    load(library, "PQsetNoticeProcessor", setNoticeProcessor);
    load(library, "PQhost", host);
    load(library, "PQdb", database);
    load(library, "PQsocket", socket);
    load(library, "PQsendQuery", sendQuery);
    load(library, "PQsendQueryParams", sendQueryParams);
    load(library, "PQenterPipelineMode", enterPipeline);
    load(library, "PQexitPipelineMode", exitPipeline);
    load(library, "PQpipelineSync", sync);
    load(library, "PQconsumeInput", consumeInput);
    load(library, "PQisBusy", isBusy);
    load(library, "PQflush", flush);
    load(library, "PQgetResult", getResult);
    load(library, "PQclear", clear);
    load(library, "PQresultStatus", resultStatus);
    load(library, "PQresultErrorField", errorField);
    load(library, "PQcmdTuples", affected);
    load(library, "PQntuples", rows);
    load(library, "PQnfields", columns);
    load(library, "PQgetvalue", value);
    load(library, "PQgetlength", length);
    load(library, "PQputCopyData", putCopyData);
    load(library, "PQputCopyEnd", putCopyEnd);
  }

  template <class Function>
  static void load(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (function == nullptr) {
      throw ServerError("", std::string("libpq has no ") + name);
    }
  }
};

PGconn* connectionOf(void* connection) { return static_cast<PGconn*>(connection); }

std::string firstLine(const char* text) {
  const std::string all = text == nullptr ? "" : text;
  return all.substr(0, all.find('\n'));
}

/// A character that is not percent-encoded moves parts of a password to where messages quote them.
void checkAddress(const std::string& address) {
  const Libpq& pq = Libpq::get();
  const std::unique_ptr<PQconninfoOption, void (*)(PQconninfoOption*)> options(
      pq.parse(address.c_str(), nullptr),
      [](PQconninfoOption* each) { Libpq::get().freeOptions(each); });
  bool isSound = options != nullptr;
  for (const PQconninfoOption* option = options.get(); isSound && option->keyword != nullptr;
       ++option) {
    const std::string name = option->keyword;
    const std::string value = option->val == nullptr ? "" : option->val;
    if (name == "port") {
      isSound = value.find_first_not_of("0123456789,") == std::string::npos;
    } else if (name == "host" || name == "dbname") {
      isSound = value.find('@') == std::string::npos;
    }
  }
  if (!isSound) {
    throw ServerError("",
                      "the address is no \"postgresql://USER@HOST/DATABASE\"; is a character of it "
                      "to be percent-encoded?");
  }
}

}  // namespace

class Server::Result {
 public:
  explicit Result(PGresult* result) : result_(result) {}

  explicit operator bool() const { return result_ != nullptr; }
  PGresult* get() const { return result_.get(); }
  ExecStatusType status() const { return Libpq::get().resultStatus(result_.get()); }

  Rows rows() const {
    const Libpq& pq = Libpq::get();
    Rows rows(static_cast<std::size_t>(pq.rows(result_.get())));
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const int row = static_cast<int>(i);
      for (int column = 0; column < pq.columns(result_.get()); ++column) {
        rows[i].emplace_back(pq.value(result_.get(), row, column),
                             static_cast<std::size_t>(pq.length(result_.get(), row, column)));
      }
    }
    return rows;
  }

 private:
  struct Clear {
    void operator()(PGresult* result) const { Libpq::get().clear(result); }
  };
  std::unique_ptr<PGresult, Clear> result_;
};

Server::Server(const std::string& address, unsigned seconds)
    : milliseconds_(seconds == 0 ? -1 : static_cast<int>(seconds) * 1000) {
  const Libpq& pq = Libpq::get();
  checkAddress(address);
  // What the address itself says comes last, and holds.
  const std::array keywords = {"connect_timeout",  "keepalives_idle",
                               "tcp_user_timeout", "fallback_application_name",
                               "dbname",           (const char*)nullptr};
  const std::array values = {"5", "30", "60000", "quilp", address.c_str(), (const char*)nullptr};
  PGconn* const connection = pq.connect(keywords.data(), values.data(), 1);
  connection_ = connection;
  if (pq.status(connection) != CONNECTION_OK) {
    const std::string why = firstLine(pq.errorMessage(connection));
    pq.finish(connection);
    throw ServerError("", why);
  }
  pq.setNoticeProcessor(
      connection, [](void*, const char*) {}, nullptr);
  place_ = std::string(pq.host(connection)) + ", database " + pq.database(connection);
}

Server::~Server() { Libpq::get().finish(connectionOf(connection_)); }

void Server::fail(const Result* result) {
  isSound_ = false;
  const Libpq& pq = Libpq::get();
  if (result != nullptr) {
    const char* const state = pq.errorField(result->get(), PG_DIAG_SQLSTATE);
    const char* const text = pq.errorField(result->get(), PG_DIAG_MESSAGE_PRIMARY);
    if (text != nullptr) {
      throw ServerError(state == nullptr ? "" : state, firstLine(text));
    }
  }
  const std::string text = firstLine(pq.errorMessage(connectionOf(connection_)));
  throw ServerError("", text.empty() ? "the connection is lost" : text);
}

/// Until there is a result.
void Server::wait() {
  const Libpq& pq = Libpq::get();
  PGconn* const connection = connectionOf(connection_);
  int unsent = pq.flush(connection);
  while (unsent > 0 || pq.isBusy(connection) != 0) {
    const short events = static_cast<short>(unsent > 0 ? POLLIN | POLLOUT : POLLIN);
    pollfd waited = {pq.socket(connection), events, 0};
    const int ready = poll(&waited, 1, milliseconds_);
    if (ready == 0) {
      isSound_ = false;
      throw ServerError("", "no answer within " + std::to_string(milliseconds_ / 1000) +
                                " seconds from " + place_);
    }
    if ((ready < 0 && errno != EINTR) || (ready > 0 && pq.consumeInput(connection) == 0)) {
      fail(nullptr);
    }
    unsent = pq.flush(connection);
  }
  if (unsent < 0) {
    fail(nullptr);
  }
}

Server::Result Server::next() {
  wait();
  return Result(Libpq::get().getResult(connectionOf(connection_)));
}

Server::Rows Server::run(const std::string& sql) {
  if (Libpq::get().sendQuery(connectionOf(connection_), sql.c_str()) == 0) {
    fail(nullptr);
  }
  Rows rows;
  while (const Result result = next()) {
    if (result.status() != PGRES_COMMAND_OK && result.status() != PGRES_TUPLES_OK) {
      fail(&result);
    }
    rows = result.rows();
  }
  return rows;
}

std::vector<Server::Rows> Server::ask(const std::vector<Query>& queries) {
  const Libpq& pq = Libpq::get();
  PGconn* const connection = connectionOf(connection_);
  bool isSent = pq.enterPipeline(connection) != 0;
  for (const Query& query : queries) {
    const char* const parameter = query.parameter.c_str();
    isSent =
        isSent && pq.sendQueryParams(connection, query.sql.c_str(), query.parameter.empty() ? 0 : 1,
                                     nullptr, &parameter, nullptr, nullptr, 1) != 0;
  }
  if (!isSent || pq.sync(connection) == 0) {
    fail(nullptr);
  }
  std::vector<Rows> answers;
  for (std::size_t i = 0; i < queries.size(); ++i) {
    const Result result = next();
    if (!result || result.status() != PGRES_TUPLES_OK) {
      fail(result ? &result : nullptr);
    }
    answers.push_back(result.rows());
    next();  // the end of one query
  }
  next();  // the end of all of them
  pq.exitPipeline(connection);
  return answers;
}

void Server::startCopy(const std::string& sql) {
  if (Libpq::get().sendQuery(connectionOf(connection_), sql.c_str()) == 0) {
    fail(nullptr);
  }
  const Result result = next();
  if (!result || result.status() != PGRES_COPY_IN) {
    fail(result ? &result : nullptr);
  }
}

void Server::copy(std::string_view bytes) {
  if (Libpq::get().putCopyData(connectionOf(connection_), bytes.data(),
                               static_cast<int>(bytes.size())) != 1) {
    fail(nullptr);
  }
}

std::uint64_t Server::endCopy() {
  const Libpq& pq = Libpq::get();
  if (pq.putCopyEnd(connectionOf(connection_), nullptr) != 1) {
    fail(nullptr);
  }
  std::uint64_t count = 0;
  while (const Result result = next()) {
    if (result.status() != PGRES_COMMAND_OK) {
      fail(&result);
    }
    count = std::strtoull(pq.affected(result.get()), nullptr, 10);
  }
  return count;
}

std::uint64_t numberIn(const std::string& value) {
  std::uint64_t number = 0;
  for (const char c : value) {
    number = number << 8 | static_cast<unsigned char>(c);
  }
  return number;
}

std::string hexOf(std::string_view bytes) {
  std::string text = "\\x";
  for (const char c : bytes) {
    text += "0123456789abcdef"[static_cast<unsigned char>(c) >> 4];
    text += "0123456789abcdef"[static_cast<unsigned char>(c) & 15];
  }
  return text;
}

}  // namespace quilp::catalogue
