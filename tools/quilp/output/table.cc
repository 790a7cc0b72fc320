#include "output/table.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <numeric>

#include "output/utf8.h"

namespace quilp {
namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowestCut = 8;  // no column is made narrower
constexpr std::size_t kLabelColumns = 16;

std::string padding(const std::string& text, std::size_t columns) {
  const std::size_t used = columnsOf(text);
  return std::string(columns > used ? columns - used : 0, ' ');
}

/// The most that a column may take, so that all fit into `room`.
std::size_t limitOf(const std::vector<std::size_t>& widths, std::size_t room) {
  std::size_t limit = *std::max_element(widths.begin(), widths.end());
  const auto used = [&widths, &limit] {
    return std::accumulate(
        widths.begin(), widths.end(), kGap * (widths.size() - 1),
        [limit](std::size_t sum, std::size_t width) { return sum + std::min(width, limit); });
  };
  while (limit > kNarrowestCut && used() > room) {
    --limit;
  }
  return limit;
}

}  // namespace

std::size_t terminalColumns(int descriptor) {
  winsize size = {};
  return isatty(descriptor) == 1 && ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void Table::addRow(Row cells) {
  for (std::string& cell : cells) {
    cell = lineText(cell);
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
  if (const std::size_t room = terminalColumns(STDOUT_FILENO)) {
    const std::size_t limit = limitOf(widths, room);
    for (std::size_t& width : widths) {
      width = std::min(width, limit);
    }
  }
  for (const Row& row : rows_) {
    std::string line;
    std::size_t gap = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const std::string cell = fitted(row[i], widths[i]);
      if (!cell.empty()) {
        line += std::string(gap, ' ') + cell;
        gap = 0;
      }
      gap += padding(cell, widths[i]).size() + kGap;
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
