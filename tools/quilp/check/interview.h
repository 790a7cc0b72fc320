#pragma once

#include <optional>
#include <string>
#include <vector>

#include "check/document.h"
#include "check/question.h"
#include "check/report.h"
#include "process/run.h"

namespace quilp {

/// Puts questions to an add-on, and judges how it takes them.
class Interview {
 public:
  Interview(Runner& runner, Report& report) : runner_(runner), report_(report) {}

  /// What the add-on is, and what it does with a verb that does not exist. False when it cannot be
  /// asked at all.
  bool greet();

  /// Judges every clause of a request. The document, when it has at least one result.
  std::optional<Document> ask(const Question& question);

  /// Tells that a request could not be made.
  void leaveOut(const Question& question, const std::string& why);

 private:
  bool judgeRun(const Run& run);
  bool judgeStatus(const Question& question, const Run& run);
  std::optional<Document> judgeAnswer(const Question& question, const Run& run);
  void askAgain(const Question& question, const Document& document);
  void askForOne(const Question& question);
  void askForNothing(const Question& question);
  void askWithoutRoom(const Question& question);
  void askHostile(const Question& question);
  std::string faultOf(const Question& question, const Run& run, const std::string& value) const;
  std::string conduct(const Run& run) const;

  Runner& runner_;
  Report& report_;
  int unknownVerbStatus_ = -1;
  std::string whySkipped_;            // why this request's later clauses are
  std::optional<int> nothingStatus_;  // for a value that nothing is found for
};

}  // namespace quilp
