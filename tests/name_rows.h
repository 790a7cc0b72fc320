#pragma once

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "name/fields.h"

// The tables of names: a line is a name, and a tab and KEY=VALUE;VALUE for each field that it
// tells. A line that starts with "# " is a remark.

namespace names {

/// The line of a name that tells these fields; its extension is told by no line.
inline std::string rowOf(const std::string& name, const std::vector<libquilp::KeyValues>& fields) {
  std::string row = name;
  for (const libquilp::KeyValues& field : fields) {
    if (field.key == "container") {
      continue;
    }
    std::string_view gap = "=";
    row.append("\t").append(field.key);
    for (const std::string& value : field.values) {
      row.append(gap).append(value);
      gap = ";";
    }
  }
  return row;
}

/// Calls visit(name, row) for each line of a table; the number of lines.
template <class Visit>
int forEachRow(const std::string& file, Visit visit) {
  std::ifstream table(QUILP_NAMES "/" + file);
  int rows = 0;
  for (std::string row; std::getline(table, row);) {
    if (row.rfind("# ", 0) != 0) {
      visit(row.substr(0, row.find('\t')), row);
      ++rows;
    }
  }
  return rows;
}

}  // namespace names
