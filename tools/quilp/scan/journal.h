#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "scan/row.h"

namespace quilp {

/// The file that a scan can be resumed with: a line for each file that was looked up, added as soon
/// as it was. Without a path it keeps nothing.
class Journal {
 public:
  /// Reads what is there. Throws std::system_error when the file cannot be opened, and
  /// std::runtime_error when it belongs to another request, or is something else.
  Journal(const std::string& path, const std::string& request);

  /// What an earlier scan found; null when it did not get to the file, or failed.
  const ScanRow* find(const std::string& file) const;

  /// Throws std::system_error when the row cannot be written.
  void add(const ScanRow& row);

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void read(const std::string& path, const std::string& firstLine);

  std::unique_ptr<std::FILE, Close> file_;
  std::map<std::string, ScanRow> rows_;
};

}  // namespace quilp
