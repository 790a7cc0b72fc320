#pragma once

#include <string_view>

#include "text/cutter.h"

namespace libquilp {

/// One row of a find page. `date` is empty when the row has a link but names no year.
struct FindRow {
  Cut id;
  Cut title;
  Cut date;
};

/// True for the page of a search without results.
bool saysNoResults(std::string_view page);

/// Walks the result rows of a find page.
class FindPage {
 public:
  explicit FindPage(std::string_view page);

  bool next(FindRow& row);

 private:
  Cutter table_;
};

}  // namespace libquilp
