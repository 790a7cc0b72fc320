#pragma once

#include <string>
#include <vector>

#include "plugin/control.h"
#include "plugin/run_program.h"

namespace libquilp {

/// One run of curl.
struct Fetch {
  std::string address;
  int exit = 0;              // curl's exit status
  int http = 0;              // HTTP status; 0 for no answer
  bool isChallenge = false;  // the page or a header demands a browser
  long bytes = 0;
  double seconds = 0;
};

/// Receives the steps of a lookup. Enrichment threads call pageFetched() concurrently.
class Observer {
 public:
  Observer() = default;
  Observer(const Observer&) = delete;
  Observer& operator=(const Observer&) = delete;
  virtual ~Observer() = default;

  virtual void addOnStarted(const std::vector<std::string>& /*argv*/) {}
  virtual void addOnEnded(const ProgramEnd& /*end*/) {}
  virtual void pageFetched(const Fetch& /*fetch*/) {}
  virtual void rowsFound(int /*rows*/) {}
  /// The number of rows whose printed entry has this element filled.
  virtual void fieldFound(const char* /*element*/, int /*filled*/) {}
  /// A message that an unobserved lookup writes to standard error.
  virtual void message(const std::string& /*text*/) {}
};

/// What a lookup passes down to everything that it calls.
struct Context {
  Observer* observer = nullptr;
  Control* control = nullptr;  // may end the lookup; null: it takes the time that it takes
  bool isBuiltInOnly = false;  // no add-on is asked

  void tell(const std::string& message) const;
};

}  // namespace libquilp
