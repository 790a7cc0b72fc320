#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "plugin/files.h"
#include "plugin/observer.h"

namespace libquilp {

/// Tells the observer of one run of curl; does nothing without an observer.
class FetchReport {
 public:
  /// curl is to leave the headers in a file of this object's.
  FetchReport(const std::string& address, const Context& context);
  /// curl leaves the headers in a file of the caller's anyway.
  FetchReport(const std::string& address, const Context& context, std::string headers);

  /// What to append to curl's command. The shell is not to complain that there is no curl: the
  /// observer is told.
  std::string option() const;

  /// To be called once curl has ended.
  void finish(int exit, std::string_view page);

 private:
  Observer* observer_;
  Fetch fetch_;
  CTmpFile own_;
  std::string headers_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace libquilp
