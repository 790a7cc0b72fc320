#pragma once

#include <memory>
#include <string>

#include "output/format.h"
#include "scan/row.h"

namespace quilp {

/// Prints the rows of a scan to standard output: CSV and JSON row by row, a table at the end.
class RowWriter {
 public:
  virtual ~RowWriter() = default;
  /// Both return false when standard output cannot be written.
  virtual bool add(const ScanRow& row) = 0;
  virtual bool end() = 0;
};

/// A table has the files' paths relative to `folder`, where one is given.
std::unique_ptr<RowWriter> makeRowWriter(Format format, const std::string& folder);

}  // namespace quilp
