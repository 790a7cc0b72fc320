#pragma once

#include <string>

namespace quilp {

/// Standard output goes to a file in memory as long as it lives.
class CapturedOutput {
 public:
  CapturedOutput();
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  /// Ends the capture and gives what there is.
  std::string take();

 private:
  void end();

  int output_;
  int file_;
};

}  // namespace quilp
