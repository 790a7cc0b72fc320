#pragma once

#include <string>

namespace quilp {

/// Writes messages and, on a terminal, one line of progress to standard error.
class Messages {
 public:
  Messages();

  void say(const std::string& message) const;
  /// Replaces the line of progress; an empty text removes it.
  void showProgress(const std::string& text) const;

 private:
  const bool isTerminal_;
};

}  // namespace quilp
