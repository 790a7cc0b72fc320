#include "imdb/find_page.h"

#include <algorithm>

#include "ascii.h"

namespace libquilp {
namespace {

constexpr std::string_view kResultCell = "<td class=\"result_text\">";

// The first link's text, as it stands.
Cut titleOf(std::string_view row) {
  Cutter cell(row);
  if (!cell.past(kResultCell)) {
    return {};
  }
  const std::string_view text = cell.rest();
  const std::size_t linkEnd = text.find("</a>");
  if (linkEnd == std::string_view::npos) {
    return {};
  }
  // If the link has no ">", the next one after "</a>" is found: the count wraps around, and the
  // title is the rest of the row.
  const std::size_t start = text.find('>') + 1;
  return cutAt(text, start, linkEnd - start);
}

// The first group in parentheses after the link that is a number or empty: not "(I)", not a kind.
Cut dateOf(std::string_view row) {
  Cutter cell(row);
  if (!cell.past(kResultCell) || !contains(cell.rest(), "</td>") || !cell.past("</a>")) {
    return {};
  }
  while (const Cut group = cell.between("(", ")")) {
    if (std::all_of(group->begin(), group->end(),
                    [](char c) { return isDigit(static_cast<unsigned char>(c)); })) {
      return group;
    }
  }
  return "";
}

}  // namespace

bool saysNoResults(std::string_view page) { return contains(page, "No results."); }

// <table class="findList">
//   <tr> <td class="primary_photo"><a href="/title/ID/?ref_=…"><img …></a></td>
//        <td class="result_text"><a href="/title/ID/?ref_=…">TITLE</a> (I) (YEAR) </td> </tr>
FindPage::FindPage(std::string_view page)
    : table_(Cutter(page).between("<table class=\"findList\">", "</table>").value_or("")) {}

bool FindPage::next(FindRow& row) {
  const Cut text = table_.between("<td class=\"primary_photo\">", "</tr>");
  if (!text) {
    return false;
  }
  row.id = Cutter(*text).between("/title/", "/?");
  row.title = titleOf(*text);
  row.date = dateOf(*text);
  return true;
}

}  // namespace libquilp
