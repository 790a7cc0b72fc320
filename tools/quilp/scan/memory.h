#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include "scan/row.h"

namespace quilp {

/// The file of --resume: a line of JSON for each item that was found out about, added at once.
/// Items are known by their absolute paths. Without a path it keeps nothing.
class Memory {
 public:
  /// Reads the file. Throws std::system_error when it cannot be opened, and std::runtime_error when
  /// it belongs to a scan with other settings.
  Memory(const std::string& path, const std::string& settings);

  /// The result of an earlier scan; null when there is none, or the lookup failed.
  const ScanRow* find(const std::string& file) const;

  /// Throws std::system_error when the row cannot be written.
  void add(const ScanRow& row);

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void read(const std::string& path, const std::string& heading);

  std::unique_ptr<std::FILE, Close> file_;
  std::map<std::string, ScanRow> rows_;
};

}  // namespace quilp
