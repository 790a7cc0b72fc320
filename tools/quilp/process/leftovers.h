#pragma once

#include <set>
#include <string>
#include <vector>

namespace quilp {

/// Finds the files that a run leaves in its working folder and in the folders for temporary files.
/// The latter are shared: files of other users, and documents of other calls, do not count.
class Leftovers {
 public:
  /// `document` is the one file that may stay.
  Leftovers(std::string workingFolder, std::string document);

  /// Returns the files that are new. Empties the working folder and removes files whose names begin
  /// with the document's; all others stay.
  std::vector<std::string> collect() const;

 private:
  std::string workingFolder_;
  std::string document_;
  std::vector<std::string> sharedFolders_;
  std::set<std::string> before_;
};

}  // namespace quilp
