#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quilp {

/// Rows of text under headings, in columns as wide as their cells, one line a row. On a terminal,
/// the widest columns are cut so that a row fits.
class Table {
 public:
  using Row = std::vector<std::string>;

  explicit Table(Row headings) : rows_{std::move(headings)} {}

  /// A row has as many cells as there are headings.
  void addRow(Row cells);

  /// Returns false when standard output cannot be written.
  bool print() const;

 private:
  std::vector<Row> rows_;
};

/// The width of a terminal; 0 when the descriptor is something else.
std::size_t terminalColumns(int descriptor);

/// Prints a label and, in the next column, its value; nothing when the value is empty.
void printLine(const std::string& label, const std::string& value);

}  // namespace quilp
