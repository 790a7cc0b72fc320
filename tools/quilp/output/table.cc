#include "output/table.h"

#include <algorithm>
#include <iostream>

#include "output/utf8.h"

namespace quilp {
namespace {

constexpr std::size_t kWidestCell = 60;
constexpr std::size_t kGap = 2;
constexpr std::size_t kLabelColumns = 16;

std::string padding(const std::string& text, std::size_t columns) {
  const std::size_t used = columnsOf(text);
  return std::string(columns > used ? columns - used : 0, ' ');
}

}  // namespace

void Table::addRow(Row cells) {
  for (std::string& cell : cells) {
    cell = fitted(lineText(cell), kWidestCell);
  }
  cells.resize(rows_.front().size());
  rows_.push_back(std::move(cells));
}

bool Table::print() const {
  std::vector<std::size_t> widths(rows_.front().size());
  for (const Row& row : rows_) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      widths[i] = std::max(widths[i], columnsOf(row[i]));
    }
  }
  for (const Row& row : rows_) {
    std::string line;
    std::size_t gap = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      if (!row[i].empty()) {
        line += std::string(gap, ' ') + row[i];
        gap = 0;
      }
      gap += padding(row[i], widths[i]).size() + kGap;
    }
    std::cout << line << '\n';
  }
  return static_cast<bool>(std::cout.flush());
}

void printLine(const std::string& label, const std::string& value) {
  if (!value.empty()) {
    const std::string shown = lineText(label);
    std::cout << shown << padding(shown, kLabelColumns) << ' ' << lineText(value) << '\n';
  }
}

}  // namespace quilp
