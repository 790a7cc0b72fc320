#include "check/interview.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "check/hostile.h"

namespace quilp {
namespace {

constexpr const char* kNonsense = "zqxjvw kwpfyx";

std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : ", ") + name;
  }
  return text;
}

std::string statusOf(const Run& run) {
  std::string text = run.signal != 0 ? "ended by signal " + std::to_string(run.signal) + " (" +
                                           strsignal(run.signal) + ")"
                                     : "status " + std::to_string(run.status);
  return run.output.empty() ? text : text + "; it wrote: " + run.output;
}

/// The arguments as for a shell, to be read and not to be run.
std::string commandLine(const Question& question) {
  std::string line;
  for (const std::string& argument : question.arguments) {
    const bool plain = !argument.empty() && argument.find_first_of(" '\"$&;") == std::string::npos;
    line += plain ? argument + ' ' : '"' + argument + "\" ";
  }
  return line + "-o FILE";
}

/// Where the value of "-n" stands; the end when there is none.
std::size_t countOf(const Question& question) {
  const auto& arguments = question.arguments;
  const auto option = std::find(arguments.begin(), arguments.end(), "-n");
  return static_cast<std::size_t>(option - arguments.begin()) + 1;
}

bool hasCount(const Question& question) { return countOf(question) < question.arguments.size(); }

bool isDash(const Hostile& hostile) { return std::strcmp(hostile.clause.id, kDash) == 0; }

/// What is made of a keyword begins with no "-".
bool applies(const Hostile& hostile, const Question& question) {
  return !question.hasKeyword() || !isDash(hostile);
}

std::vector<Clause> clausesOf(const Question& question) {
  using namespace clause;
  std::vector<Clause> clauses = {kTime,   kInput,    kProcesses, kLeftovers,  kVerb,
                                 kStatus, kDocument, kEncoding,  kWellFormed, kRoot};
  if (question.request.entry != nullptr) {
    clauses.push_back(kEntries);
  }
  clauses.push_back(kFields);
  clauses.push_back(question.request.plainText ? kText : kCData);
  clauses.insert(clauses.end(), {kOnce, kNames, kTwice});
  if (hasCount(question)) {
    clauses.push_back(kCount);
  }
  if (!question.request.plainText) {
    clauses.push_back(kNothingFound);
  }
  clauses.push_back(kUnwritable);
  for (const Hostile& hostile : hostileValues()) {
    if (applies(hostile, question)) {
      clauses.push_back(hostile.clause);
    }
  }
  return clauses;
}

}  // namespace

bool Interview::greet() {
  report_.begin("program", "");
  const Run run = runner_.run({"nosuchverb", "-i", "1"});
  if (run.startError != 0) {
    const bool here = runner_.program().find('/') == std::string::npos &&
                      access(runner_.program().c_str(), X_OK) == 0;
    report_.fail(clause::kProgram,
                 std::string(std::strerror(run.startError)) +
                     (here ? "; without a \"/\", a program is searched along PATH" : ""));
    report_.skip(clause::kUnknownVerb, "it cannot be run");
    return false;
  }
  report_.pass(clause::kProgram);
  unknownVerbStatus_ = run.signal == 0 && !run.timedOut ? run.status : -1;
  if (run.timedOut) {
    report_.fail(clause::kUnknownVerb, "it did not end within the time limit");
  } else if (run.status == 0) {
    report_.fail(clause::kUnknownVerb, "status 0");
  } else {
    report_.pass(clause::kUnknownVerb);
  }
  return true;
}

std::optional<Document> Interview::ask(const Question& question) {
  report_.begin(question.name, commandLine(question));
  whySkipped_ = "there is nothing to judge after the failure";
  const Run run = runner_.run(question.arguments);
  std::optional<Document> answer;
  if (!judgeRun(run)) {
    report_.skipRest(clausesOf(question), "it did not end by itself");
    return answer;
  }
  if (judgeStatus(question, run)) {
    answer = judgeAnswer(question, run);
  }
  if (answer) {
    askAgain(question, *answer);
    askForOne(question);
  }
  if (!report_.failed(clause::kVerb)) {
    askForNothing(question);
    askWithoutRoom(question);
    askHostile(question);
  }
  report_.skipRest(clausesOf(question), whySkipped_);
  return answer;
}

void Interview::leaveOut(const Question& question, const std::string& why) {
  report_.begin(question.name, "");
  report_.skipRest(clausesOf(question), why);
}

/// False when the add-on did not come to an end.
bool Interview::judgeRun(const Run& run) {
  if (run.tooLong) {
    report_.fail(clause::kDocument, "a document without end");
    return false;
  }
  if (run.timedOut) {
    report_.fail(clause::kTime, "it was still running and has been ended");
  } else {
    report_.pass(clause::kTime);
  }
  report_.judge(clause::kInput, run.readInput ? std::vector<std::string>{"it was read"}
                                              : std::vector<std::string>{});
  if (run.timedOut) {
    return false;
  }
  report_.judge(clause::kProcesses, run.processes);
  report_.judge(clause::kLeftovers, run.leftovers);
  return true;
}

bool Interview::judgeStatus(const Question& question, const Run& run) {
  if (run.status == 0) {
    report_.pass(clause::kVerb);
    report_.pass(clause::kStatus);
    return true;
  }
  const bool unknown = run.signal == 0 && run.status == unknownVerbStatus_;
  if (question.guessed && run.signal == 0) {
    whySkipped_ = statusOf(run) + (unknown ? ", as for a verb that does not exist" : "") +
                  "; if only nothing was found, name something that is, with " + question.hint;
    return false;
  }
  if (unknown) {
    report_.fail(clause::kVerb, statusOf(run) + ", as for a verb that does not exist");
  } else {
    report_.pass(clause::kVerb);
    report_.fail(clause::kStatus, statusOf(run));
  }
  return false;
}

std::optional<Document> Interview::judgeAnswer(const Question& question, const Run& run) {
  const char* path = run.file->name();
  Document document = openDocument(question.request, path);
  if (document.fault == &clause::kDocument && !run.output.empty()) {
    document.found += "; it wrote to standard output: " + run.output;
  }
  judgeOpening(document, path, report_);
  if (document.fault != nullptr) {
    return std::nullopt;
  }
  const char* entry = question.request.entry;
  if (entry != nullptr && document.results.empty()) {
    const bool others = document.root.nChildNode() > 0;
    whySkipped_ = "nothing was found: name something that is, with " + question.hint;
    if (others || !question.guessed) {
      report_.fail(clause::kEntries, std::string(others ? "other elements" : "an empty list") +
                                         ", and no element " + entry);
    }
    return std::nullopt;
  }
  if (entry != nullptr) {
    report_.pass(clause::kEntries);
  }
  judgeContents(question.request, document, path, report_);
  const std::string id = document.first("id");
  if (!question.id.empty() && !id.empty()) {
    report_.advise(clause::kSameId,
                   id == question.id ? std::vector<std::string>{} : std::vector<std::string>{id});
  }
  return document;
}

/// The second time as newer callers ask: with the keyword in the environment, too.
void Interview::askAgain(const Question& question, const Document& document) {
  const libquilp::Variables variables =
      question.hasKeyword() ? libquilp::Variables{{libquilp::kNameVariable, question.text()}}
                            : libquilp::Variables{};
  const Run run = runner_.run(question.arguments, variables);
  const Document again = openDocument(question.request, run.file->name());
  const std::string fault = conduct(run);
  if (!fault.empty()) {
    report_.fail(clause::kTwice, fault);
  } else if (run.status != 0) {
    report_.fail(clause::kTwice, statusOf(run));
  } else if (again.fault != nullptr) {
    report_.fail(clause::kTwice, again.found);
  } else {
    const std::vector<std::string> first = document.values(question.request);
    const std::vector<std::string> second = again.values(question.request);
    const auto [one, other] =
        std::mismatch(first.begin(), first.end(), second.begin(), second.end());
    const std::string none = "nothing";
    report_.judge(clause::kTwice, first == second
                                      ? std::vector<std::string>{}
                                      : std::vector<std::string>{
                                            (one != first.end() ? *one : none) + ", and then " +
                                            (other != second.end() ? *other : none)});
  }
}

void Interview::askForOne(const Question& question) {
  if (!hasCount(question)) {
    return;
  }
  std::vector<std::string> arguments = question.arguments;
  arguments[countOf(question)] = "1";
  const Run run = runner_.run(arguments);
  const Document document = openDocument(question.request, run.file->name());
  const std::string fault = conduct(run);
  if (!fault.empty() || run.status != 0 || document.fault != nullptr || document.results.empty()) {
    report_.fail(clause::kCount, "for -n 1: " + (!fault.empty()              ? fault
                                                 : run.status != 0           ? statusOf(run)
                                                 : document.fault != nullptr ? document.found
                                                                             : "an empty list"));
  } else if (document.results.size() > 1) {
    report_.warn(clause::kCount, std::to_string(document.results.size()) + " for -n 1");
  } else {
    report_.pass(clause::kCount);
  }
}

void Interview::askForNothing(const Question& question) {
  nothingStatus_.reset();
  if (question.request.plainText) {
    return;  // a name is always a song's
  }
  const Run run = runner_.run(question.argumentsWith(kNonsense));
  const std::string fault = faultOf(question, run, kNonsense);
  if (!fault.empty()) {
    report_.fail(clause::kNothingFound, fault);
    return;
  }
  nothingStatus_ = run.status;
  if (run.status != 0) {
    report_.pass(clause::kNothingFound);
    return;
  }
  const Document document = openDocument(question.request, run.file->name());
  if (document.fault != nullptr) {
    report_.skip(clause::kNothingFound, "there is nothing to judge after the failure");
  } else if (question.request.entry == nullptr) {
    report_.fail(clause::kNothingFound, "status 0 and a document");
  } else if (!document.results.empty()) {
    report_.warn(clause::kNothingFound,
                 std::to_string(document.results.size()) + " results for " + kNonsense);
  } else {
    report_.pass(clause::kNothingFound);
  }
}

void Interview::askWithoutRoom(const Question& question) {
  if (report_.failed(clause::kDocument)) {
    return;
  }
  const Run run = runner_.runUnwritable(question.arguments);
  const std::string fault = conduct(run);
  if (!fault.empty()) {
    report_.fail(clause::kUnwritable, fault);
  } else if (run.status == 0) {
    report_.warn(clause::kUnwritable, "status 0");
  } else {
    report_.pass(clause::kUnwritable);
  }
}

void Interview::askHostile(const Question& question) {
  for (const Hostile& hostile : hostileValues()) {
    if (!applies(hostile, question)) {
      continue;
    }
    std::vector<std::string> faults;
    for (const std::string& value : hostile.values) {
      const Run run = runner_.run(question.argumentsWith(value));
      std::string fault = faultOf(question, run, value);
      if (fault.empty() && isDash(hostile) && nothingStatus_ && run.status != *nothingStatus_) {
        fault = "for " + value + ": " + statusOf(run) + ", but " + std::to_string(*nothingStatus_) +
                " for something unknown: taken for an option?";
      }
      if (!fault.empty()) {
        faults.push_back(fault);
        break;
      }
    }
    report_.judge(hostile.clause, faults);
  }
}

/// What is wrong with a run that may find nothing; empty when it is all right, or as wrong as the
/// request was that should find something.
std::string Interview::faultOf(const Question& question, const Run& run,
                               const std::string& value) const {
  const auto injected =
      std::find_if(run.leftovers.begin(), run.leftovers.end(),
                   [](const std::string& left) { return left.rfind(kInjected, 0) == 0; });
  std::string fault;
  if (injected != run.leftovers.end()) {
    fault = "a shell ran a part of it";
  } else {
    fault = conduct(run);
  }
  if (fault.empty() && run.status == 0) {
    const Document document = openDocument(question.request, run.file->name());
    if (document.fault != nullptr && !report_.failed(*document.fault)) {
      fault = "status 0, but " + document.found;
    }
  }
  return fault.empty() ? fault : "for \"" + value.substr(0, 40) + "\": " + fault;
}

/// What no request excuses.
std::string Interview::conduct(const Run& run) const {
  if (run.timedOut || run.tooLong) {
    return "it did not end by itself";
  }
  if (run.signal != 0 && !report_.failed(clause::kStatus)) {
    return statusOf(run);
  }
  if (run.readInput && !report_.failed(clause::kInput)) {
    return "it read standard input";
  }
  if (!run.processes.empty() && !report_.failed(clause::kProcesses)) {
    return "it left processes running: " + listed(run.processes);
  }
  if (!run.leftovers.empty() && !report_.failed(clause::kLeftovers)) {
    return "it left files: " + listed(run.leftovers);
  }
  return "";
}

}  // namespace quilp
