#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quilp {

/// Rows of text under headings, in columns as wide as what they hold. What is not one line becomes
/// one.
class Table {
 public:
  using Row = std::vector<std::string>;

  explicit Table(Row headings) : rows_{std::move(headings)} {}

  /// A row has as many cells as there are headings. A long cell is cut.
  void addRow(Row cells);

  /// Prints to standard output; false when that could not be written.
  bool print() const;

 private:
  std::vector<Row> rows_;
};

/// Prints "label  value", the value in its column; nothing for an empty value.
void printLine(const std::string& label, const std::string& value);

}  // namespace quilp
