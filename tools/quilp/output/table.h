#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quilp {

/// Rows of text under headings, in columns as wide as their cells. A cell is printed on one line.
/// On a terminal, the widest columns are cut to its width.
class Table {
 public:
  using Row = std::vector<std::string>;

  explicit Table(Row headings) : rows_{std::move(headings)} {}

  /// A row has as many cells as there are headings.
  void addRow(Row cells);

  /// Prints to standard output; false when that could not be written.
  bool print() const;

 private:
  std::vector<Row> rows_;
};

/// The width of the terminal that a descriptor is; 0 for anything else.
std::size_t terminalColumns(int descriptor);

/// Prints "label  value", the value in its column; nothing for an empty value.
void printLine(const std::string& label, const std::string& value);

}  // namespace quilp
