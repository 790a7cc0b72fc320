#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "plugin/environment.h"
#include "plugin/files.h"

namespace quilp {

/// Thrown when a signal asks this program to end.
struct Interrupted {
  int signal;
};

/// What one run of an add-on did.
struct Run {
  int status = 0;                            // as the library sees it
  int signal = 0;                            // that ended it; 0 for none
  int startError = 0;                        // why it could not be started; 0 if it was
  bool timedOut = false;                     // and was killed
  bool tooLong = false;                      // its document grew too long, and it was killed
  bool readInput = false;                    // it read standard input
  std::vector<std::string> processes;        // that ran on after its end, and were killed
  std::vector<std::string> leftovers;        // files that it did not remove
  std::string output;                        // the start of what it wrote to its outputs
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

  /// `arguments` are those before "-o FILE".
  Run run(const std::vector<std::string>& arguments, const libquilp::Variables& variables = {});

  /// The same, with a file that cannot be created.
  Run runUnwritable(const std::vector<std::string>& arguments);

  const std::string& program() const { return program_; }

 private:
  Run runInto(const std::vector<std::string>& arguments, const std::string& file,
              const libquilp::Variables& variables);

  std::string program_;
  std::chrono::milliseconds limit_;
  std::string folder_;
};

}  // namespace quilp
