#pragma once

#include <string>
#include <vector>

#include "check/clauses.h"

namespace quilp {

enum class Outcome { kPass, kFail, kWarning, kSkipped };

/// What came of a clause in a request.
struct Finding {
  std::string request;
  std::string clause;
  Outcome outcome;
  std::string expected;
  std::string found;
};

/// What a check found out, request by request.
class Report {
 public:
  /// The findings that follow are about this request; `command` is what the add-on is run with.
  void begin(const std::string& request, const std::string& command);

  void pass(const Clause& clause);
  void fail(const Clause& clause, const std::string& found);
  void warn(const Clause& clause, const std::string& found);
  void skip(const Clause& clause, const std::string& why);

  /// Passed where there is nothing to say, and otherwise failed.
  void judge(const Clause& clause, const std::vector<std::string>& faults);
  /// The same, but no more than a warning.
  void advise(const Clause& clause, const std::vector<std::string>& faults);

  /// Whatever of these has not come up in this request is skipped.
  void skipRest(const std::vector<Clause>& clauses, const std::string& why);

  /// Whether this request failed the clause.
  bool failed(const Clause& clause) const;

  int count(Outcome outcome) const;

  /// Nothing failed and nothing had to be left out.
  bool good() const { return count(Outcome::kFail) == 0 && count(Outcome::kSkipped) == 0; }

  /// Prints to standard output; false when that could not be written.
  bool printText(const std::string& program, const std::string& type) const;
  bool printAsJson(const std::string& program, const std::string& type) const;

 private:
  struct Request {
    std::string name;
    std::string command;
  };

  void add(const Clause& clause, Outcome outcome, const std::string& found);

  std::vector<Request> requests_;
  std::vector<Finding> findings_;
};

}  // namespace quilp
