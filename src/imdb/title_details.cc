#include "imdb/title_details.h"

#include <algorithm>
#include <utility>

#include "libquilp.h"

namespace libquilp {
namespace {

constexpr std::string_view kName = "<span class=\"itemprop\" itemprop=\"name\">";
constexpr std::string_view kNameEnd = "</span>";

// <div><a href="/character/ch0001/?ref_=…">ROLE</a></div>, or <div>ROLE</div>
Cut roleOf(std::string_view cell) {
  Cutter link(cell);
  return link.past("<a href=\"") ? link.between(">", "</a>")
                                 : Cutter(cell).between("<div>", "</div>");
}

}  // namespace

std::optional<std::string> trimmed(Cut cut) {
  if (!cut) {
    return {};
  }
  std::string text(*cut);
  return removeEmptyChar(text);
}

void appendNames(std::string_view block, std::vector<std::string>& names) {
  Cutter cutter(block);
  while (const Cut name = cutter.between(kName, kNameEnd)) {
    names.emplace_back(*name);
  }
}

// <table class="cast_list">
//   <tr class="odd"> <td class="itemprop" …><a …><span class="itemprop"
//   itemprop="name">ACTOR</span>
//     </a></td> <td class="ellipsis">...</td> <td class="character">ROLE</td> </tr> … </table>
void readCast(std::string_view page, std::vector<std::string>& names,
              std::vector<std::string>& roles, void (*shorten)(std::string& role)) {
  names.clear();
  roles.clear();
  Cutter rows(Cutter(page).between("<table class=\"cast_list\">", "</table>").value_or(""));
  while (const Cut row = rows.between("<tr class=", "</tr>")) {
    // A row without the marker also has a name: the position wraps around, and the name starts at
    // the marker's length minus one. A shorter row throws. If the end is missing, the count wraps
    // around, and the name is the rest of the row.
    const std::size_t start = row->find(kName) + kName.size();
    const std::size_t end = row->find(kNameEnd, start);
    names.emplace_back(cutAt(*row, start, end - start));
    Cutter afterName(row->substr(std::min(end, row->size())));
    const Cut cell = afterName.between("<td class=\"character\">", "</td>");
    auto role = trimmed(cell ? roleOf(*cell) : Cut());
    if (!role) {
      continue;
    }
    if (shorten != nullptr) {
      shorten(*role);
      removeEmptyChar(*role);
    }
    roles.push_back(*std::move(role));
  }
}

// <span class="itemprop" itemprop="genre">GENRE</span>
void readGenres(std::string_view page, std::vector<std::string>& genres) {
  genres.clear();
  Cutter cutter(page);
  while (const Cut genre =
             cutter.between("<span class=\"itemprop\" itemprop=\"genre\">", "</span>")) {
    genres.emplace_back(*genre);
  }
}

// <div class="titlePageSprite star-box-giga-star"> 8.5 </div>, or
// <span class="rating">8.5<span class="ofTen">/10</span></span>
std::optional<std::string> userRatingOf(std::string_view page) {
  Cut rating = Cutter(page).between("<div class=\"titlePageSprite star-box-giga-star\">", "</div>");
  if (!rating) {
    rating = Cutter(page).between("<span class=\"rating\">", "<span class=");
  }
  return trimmed(rating);
}

}  // namespace libquilp
