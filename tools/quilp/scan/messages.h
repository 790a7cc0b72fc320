#pragma once

#include <string>

namespace quilp {

/// What a scan tells on standard error: messages and, on a terminal, one line of progress.
class Messages {
 public:
  Messages();

  void say(const std::string& message) const;
  /// Takes the place of the line before; an empty text takes it away.
  void showProgress(const std::string& text) const;

 private:
  const bool isTerminal_;
};

}  // namespace quilp
