#include "check/report.h"

#include <json/value.h>

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "output/json_output.h"
#include "output/utf8.h"

namespace quilp {
namespace {

constexpr std::size_t kShown = 3;
constexpr std::size_t kColumns = 160;
constexpr int kClauseColumns = 16;

const char* nameOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::kPass:
      return "pass";
    case Outcome::kFail:
      return "fail";
    case Outcome::kWarning:
      return "warning";
    case Outcome::kSkipped:
      break;
  }
  return "skipped";
}

std::string joined(const std::vector<std::string>& faults) {
  std::string text;
  for (std::size_t i = 0; i < std::min(faults.size(), kShown); ++i) {
    text += (i > 0 ? "; " : "") + fitted(lineText(faults[i]), kColumns);
  }
  if (faults.size() > kShown) {
    text += "; and " + std::to_string(faults.size() - kShown) + " more";
  }
  return text;
}

void printFinding(const Finding& finding) {
  std::cout << "  " << std::left << std::setw(9)
            << (finding.outcome == Outcome::kFail ? "FAIL" : nameOf(finding.outcome))
            << std::setw(kClauseColumns) << finding.clause;
  switch (finding.outcome) {
    case Outcome::kPass:
      std::cout << finding.expected << '\n';
      break;
    default:
      std::cout << "expected: " << finding.expected << '\n'
                << std::string(11 + kClauseColumns, ' ') << "found:    " << lineText(finding.found)
                << '\n';
  }
}

}  // namespace

void Report::begin(const std::string& request, const std::string& command) {
  requests_.push_back({request, command});
}

void Report::add(const Clause& clause, Outcome outcome, const std::string& found) {
  findings_.push_back({requests_.back().name, clause.id, outcome, clause.expected, found});
}

void Report::pass(const Clause& clause) { add(clause, Outcome::kPass, ""); }

void Report::fail(const Clause& clause, const std::string& found) {
  add(clause, Outcome::kFail, found);
}

void Report::warn(const Clause& clause, const std::string& found) {
  add(clause, Outcome::kWarning, found);
}

void Report::skip(const Clause& clause, const std::string& why) {
  add(clause, Outcome::kSkipped, why);
}

void Report::judge(const Clause& clause, const std::vector<std::string>& faults) {
  add(clause, faults.empty() ? Outcome::kPass : Outcome::kFail, joined(faults));
}

void Report::advise(const Clause& clause, const std::vector<std::string>& faults) {
  add(clause, faults.empty() ? Outcome::kPass : Outcome::kWarning, joined(faults));
}

void Report::skipRest(const std::vector<Clause>& clauses, const std::string& why) {
  for (const Clause& clause : clauses) {
    const bool known = std::any_of(findings_.begin(), findings_.end(), [&](const Finding& finding) {
      return finding.request == requests_.back().name && finding.clause == clause.id;
    });
    if (!known) {
      skip(clause, why);
    }
  }
}

bool Report::failed(const Clause& clause) const {
  return std::any_of(findings_.begin(), findings_.end(), [&](const Finding& finding) {
    return finding.outcome == Outcome::kFail && finding.request == requests_.back().name &&
           finding.clause == clause.id;
  });
}

int Report::count(Outcome outcome) const {
  return static_cast<int>(
      std::count_if(findings_.begin(), findings_.end(),
                    [outcome](const Finding& finding) { return finding.outcome == outcome; }));
}

bool Report::printText(const std::string& program, const std::string& type) const {
  std::cout << lineText(program) << " as an add-on of type " << type << '\n';
  for (const Request& request : requests_) {
    std::cout << '\n' << request.name;
    if (!request.command.empty()) {
      std::cout << ": " << lineText(request.command);
    }
    std::cout << '\n';
    std::string skipped;
    std::string why;
    for (const Finding& finding : findings_) {
      if (finding.request != request.name) {
        continue;
      }
      if (finding.outcome == Outcome::kSkipped) {
        skipped += (skipped.empty() ? "" : ", ") + finding.clause;
        why = finding.found;
      } else {
        printFinding(finding);
      }
    }
    if (!skipped.empty()) {
      std::cout << "  skipped  " << skipped << "\n           " << lineText(why) << '\n';
    }
  }
  std::cout << '\n'
            << count(Outcome::kPass) << " passed, " << count(Outcome::kFail) << " failed, "
            << count(Outcome::kWarning) << " with a warning, " << count(Outcome::kSkipped)
            << " skipped\n";
  return static_cast<bool>(std::cout.flush());
}

bool Report::printAsJson(const std::string& program, const std::string& type) const {
  Json::Value report;
  report["program"] = jsonText(program);
  report["type"] = type;
  for (const Outcome outcome :
       {Outcome::kPass, Outcome::kFail, Outcome::kWarning, Outcome::kSkipped}) {
    report["count"][nameOf(outcome)] = count(outcome);
  }
  report["clauses"] = Json::Value(Json::arrayValue);
  for (const Finding& finding : findings_) {
    Json::Value entry;
    entry["request"] = finding.request;
    entry["clause"] = finding.clause;
    entry["result"] = nameOf(finding.outcome);
    entry["expected"] = finding.expected;
    entry["found"] = jsonText(finding.found);
    report["clauses"].append(entry);
  }
  return printJson(report);
}

}  // namespace quilp
