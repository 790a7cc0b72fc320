#include "scan/journal.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

namespace quilp {
namespace {

constexpr char kHeading[] = "quilp scan\t";
constexpr char kLineEnd[] = ".";  // a line without it was cut off

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '\t':
        result += "\\t";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\\':
        result += "\\\\";
        break;
      default:
        result += c;
    }
  }
  return result;
}

/// The cells of a line, their escapes undone.
std::vector<std::string> cellsOf(std::string_view line) {
  std::vector<std::string> cells(1);
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\t') {
      cells.emplace_back();
    } else if (line[i] == '\\' && i + 1 < line.size()) {
      const char c = line[++i];
      cells.back() += c == 't' ? '\t' : c == 'n' ? '\n' : c;
    } else {
      cells.back() += line[i];
    }
  }
  return cells;
}

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

Journal::Journal(const std::string& path, const std::string& request) {
  if (path.empty()) {
    return;
  }
  file_.reset(std::fopen(path.c_str(), "ae"));
  if (!file_) {
    fail("cannot open " + path);
  }
  read(path, kHeading + escaped(request));
}

void Journal::read(const std::string& path, const std::string& firstLine) {
  std::ifstream lines(path);
  std::string line;
  if (!lines) {
    fail("cannot read " + path);
  }
  std::getline(lines, line);
  if (lines.eof() && firstLine.compare(0, line.size(), line) == 0) {  // empty, or cut off here
    std::fprintf(file_.get(), "%s\n", firstLine.c_str() + line.size());
    return;
  }
  if (line != firstLine) {
    throw std::runtime_error(path + " belongs to another scan, or to none");
  }
  bool whole = !lines.eof();
  while (std::getline(lines, line)) {
    whole = !lines.eof();
    const std::vector<std::string> cells = cellsOf(line);
    if (cells.size() == 6 && cells[5] == kLineEnd) {
      rows_[cells[0]] = {cells[0], cells[1], cells[2], cells[3], cells[4]};
    }
  }
  if (!whole) {
    std::fputc('\n', file_.get());
  }
}

const ScanRow* Journal::find(const std::string& file) const {
  const auto found = rows_.find(file);
  return found != rows_.end() ? &found->second : nullptr;
}

void Journal::add(const ScanRow& row) {
  if (!file_ || isUnsettled(row.answer)) {
    return;
  }
  std::string line;
  for (const std::string& cell : {row.file, row.keyword, row.match, row.year, row.id}) {
    line += escaped(cell) + '\t';
  }
  line += kLineEnd;
  if (std::fprintf(file_.get(), "%s\n", line.c_str()) < 0 || std::fflush(file_.get()) != 0) {
    fail("cannot write what a scan can be resumed with");
  }
}

}  // namespace quilp
