#pragma once

#include <set>
#include <string>
#include <vector>

namespace quilp {

/// Tells which files a run leaves behind in its working folder and in the folders for temporary
/// files. Those are everybody's: what another user made there is not counted, nor are the documents
/// of other calls.
class Leftovers {
 public:
  /// `document` is the one file that may stay.
  Leftovers(std::string workingFolder, std::string document);

  /// What is there now and was not before. The working folder is emptied, and what is named after
  /// the document removed; the rest stays.
  std::vector<std::string> collect() const;

 private:
  std::string workingFolder_;
  std::string document_;
  std::vector<std::string> sharedFolders_;
  std::set<std::string> before_;
};

}  // namespace quilp
