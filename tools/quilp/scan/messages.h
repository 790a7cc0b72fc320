#pragma once

#include <string>

namespace quilp {

/// What a scan tells on standard error: messages and, on a terminal, one line of progress. The
/// library has no part in it: it would complain of a missing registry at each lookup, in the middle
/// of that line.
class Messages {
 public:
  Messages();
  ~Messages();
  Messages(const Messages&) = delete;
  Messages& operator=(const Messages&) = delete;

  void say(const std::string& message) const;
  /// Takes the place of the line before; an empty text takes it away.
  void showProgress(const std::string& text) const;

 private:
  const int output_;
  const bool isTerminal_;
};

}  // namespace quilp
