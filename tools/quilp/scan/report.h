#pragma once

#include <string>

#include "scan/row.h"

namespace quilp {

/// A page about a scan: one file that asks nothing of a network. Pictures are those that lie beside
/// the media files.
class ReportPage {
 public:
  /// Without a path, the page goes to standard output, and is for the current folder.
  explicit ReportPage(std::string path);

  void add(const ScanRow& row);

  /// Throws std::system_error when the page cannot be written.
  void write() const;

 private:
  std::string pictureOf(const ScanRow& row) const;

  const std::string path_;
  std::string rows_;  // of JSON
};

}  // namespace quilp
