#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "plugin/files.h"

namespace quilp {

/// A signal asked this program to end.
struct Interrupted {
  int signal;
};

/// What one run of an add-on did.
struct Run {
  int status = 0;                            // as the library sees it
  int signal = 0;                            // that ended it; 0 for none
  int startError = 0;                        // why it could not be started; 0 if it was
  bool timedOut = false;                     // and was ended for it
  bool tooLong = false;                      // its document grew without end, and it was ended
  bool readInput = false;                    // it took something from standard input
  std::vector<std::string> processes;        // that ran on behind its end, and were ended
  std::vector<std::string> leftovers;        // files that it left behind
  std::string output;                        // how what it wrote beside the document begins
  std::shared_ptr<libquilp::CTmpFile> file;  // where the document was to be
};

/// Runs a program as the library runs an add-on, but in an empty working folder of its own, within
/// a time limit, and so that nothing that it starts outlives the run.
class Runner {
 public:
  Runner(std::string program, std::chrono::milliseconds limit);
  ~Runner();
  Runner(const Runner&) = delete;
  Runner& operator=(const Runner&) = delete;

  /// `arguments` are those in front of "-o FILE".
  Run run(const std::vector<std::string>& arguments);

  /// The same, with a file that cannot be made.
  Run runUnwritable(const std::vector<std::string>& arguments);

  const std::string& program() const { return program_; }

 private:
  Run runInto(const std::vector<std::string>& arguments, const std::string& file);

  std::string program_;
  std::chrono::milliseconds limit_;
  std::string folder_;
};

}  // namespace quilp
