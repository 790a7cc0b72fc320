#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "plugin/files.h"
#include "plugin/observer.h"

namespace libquilp {

/// Reports one run of curl to the observer; does nothing without an observer.
class FetchReport {
 public:
  /// curl writes the headers to a temporary file of this object.
  FetchReport(const std::string& address, const Context& context);
  /// curl already writes the headers to a file of the caller.
  FetchReport(const std::string& address, const Context& context, std::string headers);

  /// Text to append to curl's command. It silences the shell's message about a missing curl, since
  /// the observer gets that report.
  std::string option() const;

  /// The file that curl writes the headers to; empty for none.
  const std::string& headers() const { return headers_; }

  /// Call this after curl has ended.
  void finish(int exit, std::string_view page);
  /// The same, with the headers that curl wrote elsewhere.
  void finish(int exit, std::string_view page, const std::string& headers);

 private:
  Observer* observer_;
  Fetch fetch_;
  CTmpFile own_;
  std::string headers_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace libquilp
