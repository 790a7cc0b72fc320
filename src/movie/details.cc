#include "movie/details.h"

#include <string>
#include <utility>

#include "imdb/title_page.h"
#include "plugin/files.h"
#include "plugin/page_fetch.h"
#include "text/entities.h"

// A missing section or start marker gives null or an empty list. With a missing end marker, the cut
// reaches to the end of its text.

namespace libquilp {
namespace {

char* duplicateDecoded(std::string_view text) { return duplicate(decoded(text)); }

// <title>TITLE (YEAR)</title>, <title>TITLE (YEAR) (V)</title>, <title>TITLE (KIND YEAR)</title>
void readTitle(std::string_view page, const char* id, velMovieInfo_& info) {
  info.title = info.year = info.id = nullptr;
  Cutter head(page);
  if (!head.past("<title>")) {
    return;
  }
  Cut closed = Cutter(head).upTo(") (V)</title>");
  if (!closed) {
    closed = Cutter(head).upTo(")</title>");
  }
  const std::string_view text = closed.value_or(head.rest());
  const std::size_t parenthesis = text.find(" (");
  if (closed && parenthesis != std::string_view::npos && parenthesis + 6 == text.size()) {
    info.title = duplicateDecoded(text.substr(0, parenthesis));
    info.year = duplicate(text.substr(parenthesis + 2));
  } else {
    Cutter words(text);
    const Cut title = words.upTo("(");
    if (title && contains(words.rest(), ")")) {
      info.title = duplicateDecoded(*title);
      info.year = duplicate(words.take(4));
    } else {
      info.title = duplicateDecoded(text);
    }
  }
  info.id = SafeStrdup(id);
}

// <div class="starbar-meta"> <b>7.5/10</b> … </div>
Cut ratingOf(std::string_view page) {
  const Cut block = Cutter(page).betweenOrRest("<div class=\"starbar-meta\">", "</div>");
  return block ? Cutter(*block).betweenOrRest("<b>", "/") : Cut();
}

// <h5>Plot:</h5><div class="info-content">TEXT | <a class="tn15more" href="…">See more</a> …</div>
std::string plotOf(std::string_view block, MovieLinks& links) {
  const std::string_view content = "<div class=\"info-content\">";
  const std::size_t start = block.find(content);
  const std::size_t link = block.find("<a class", start);
  const std::size_t bar = block.find(" | <", start);
  std::string text;
  if (link != std::string_view::npos && bar < link) {
    text = cutAt(block, start + content.size(), bar - start - content.size());
  } else {
    // Without a link, or without the content, the trailing part starts beyond the end and throws.
    const std::string_view trailing = cutAt(block, link, std::string_view::npos);
    text = cutAt(block, start + content.size(), link - start - content.size());
    if (contains(trailing, "Add a Plot")) {
      text.clear();
    } else if (contains(trailing, "See more") || contains(trailing, "Full summary")) {
      links.plotSummary = true;
      return {};
    }
  }
  return text;
}

void setPlot(std::string text, velMovieInfo_& info) {
  const std::size_t lineEnd = text.find('\n');
  if (lineEnd != std::string::npos) {
    text.erase(lineEnd, 1);
  }
  const std::string plot = decoded(removeEmptyChar(text));
  info.plot = duplicate(plot);
  info.outline = duplicate(plot);
}

void readPlot(std::string_view page, velMovieInfo_& info, MovieLinks& links) {
  info.outline = info.plot = nullptr;
  const std::string_view heading = "<h5>Plot";
  const std::size_t start = page.find(heading);
  if (start == std::string_view::npos) {
    return;
  }
  // The block ends six bytes before the "</div>"; the count of a shorter one wraps around.
  const std::size_t end = page.find("</div>", start);
  std::string plot =
      plotOf(cutAt(page, start + heading.size(), end - start - heading.size() - 6), links);
  if (!links.plotSummary) {
    setPlot(std::move(plot), info);
  }
}

Cut companyOf(std::string_view page) {
  Cutter cutter(page);
  return cutter.past("<h5>Company:</h5><div class=\"info-content\"><a href=\"/company/co")
             ? cutter.betweenOrRest("/\">", "</a>")
             : Cut();
}

// MPAA</a>:</h5><div class="info-content">Rated R for …, or a link to the certificate: USA:R</a>
Cut certificateOf(std::string_view page) {
  if (const Cut rated =
          Cutter(page).betweenOrRest("MPAA</a>:</h5><div class=\"info-content\">Rated ", " ")) {
    return rated;
  }
  Cutter cutter(page);
  return cutter.past("<a href=\"/search/title?certificates=us:")
             ? cutter.betweenOrRest("USA:", "</a>")
             : Cut();
}

// <div class="photo"> <a name="poster" href="/PATH" …>…</a> </div>
Cut photoPathOf(std::string_view page) {
  const Cut block = Cutter(page).betweenOrRest("<div class=\"photo\">", "</div>");
  return block ? Cutter(*block).betweenOrRest("<a name=\"poster\" href=\"", "\"") : Cut();
}

/// The section from its heading up to "</div>"; empty when it is missing.
Cutter sectionOf(std::string_view page, std::string_view heading) {
  return Cutter(Cutter(page).betweenOrRest(heading, "</div>").value_or(""));
}

/// The texts of the section's links, each found by its own marker.
Strings linksOf(Cutter section, std::string_view marker, std::string_view open) {
  Strings links;
  while (section.past(marker)) {
    const Cut link = section.betweenOrRest(open, "</a>");
    if (!link) {
      break;
    }
    links.emplace_back(*link);
  }
  return links;
}

// <a href="/country/us">USA</a>
Strings countriesOf(std::string_view page) {
  return linksOf(sectionOf(page, "<h5>Country"), "<a href=\"/country/", "\">");
}

// <a href="/character/ch0001/">ROLE</a>, or the role alone
std::string roleOf(std::string_view cell) {
  Cutter link(cell);
  return decoded(
      link.past("<a href=\"/character/") ? link.betweenOrRest("/\">", "</a>").value_or("") : cell);
}

// <a … onclick="(new Image()).src='/rg/castlist/position-1/…/';">ACTOR</a></td>
//   <td class="ddd"> ... </td><td class="char">ROLE</td>
void readCast(std::string_view page, velMovieInfo_& info) {
  info.actor.clear();
  info.role.clear();
  Cutter cast(Cutter(page)
                  .betweenOrRest("<h3>Cast</h3>", "<form action=\"/character/create\"")
                  .value_or(""));
  bool cellsLeft = true;  // avoids a search to the end of the page for every later actor
  while (cast.past(".src='/rg/castlist/position-")) {
    const Cut actor = cast.betweenOrRest("/';\">", "</a>");
    if (!actor) {
      return;
    }
    info.actor.push_back(decoded(*actor));
    const Cut cell = cellsLeft ? cast.betweenOrRest("<td class=\"char\">", "</td>") : Cut();
    cellsLeft = cell.has_value();
    if (cell) {
      info.role.push_back(roleOf(*cell));
    }
  }
}

// <a href="/Sections/Genres/Drama/">Drama</a>: the key in the address, not the text
Strings genresOf(std::string_view page) {
  Strings genres;
  Cutter section = sectionOf(page, "<h5>Genre");
  while (const Cut genre = section.betweenOrRest("<a href=\"/Sections/Genres/", "/\">")) {
    genres.emplace_back(*genre);
  }
  return genres;
}

// <a … onclick="(new Image()).src='/rg/directorlist/position-1/…/';">DIRECTOR</a>
Strings directorsOf(std::string_view page) {
  return linksOf(sectionOf(page, "<h5>Director"), ".src='/rg/directorlist/position-", "/';\">");
}

}  // namespace

// <img id="primary-img" … src="ADDRESS" … />
Cut primaryImageOf(std::string_view page) {
  const Cut tag = Cutter(page).betweenOrRest("\"primary-img\"", "/>");
  return tag ? Cutter(*tag).betweenOrRest("src=\"", "\"") : Cut();
}

MovieLinks readCombinedPage(std::string_view page, const char* id, velMovieInfo_& info) {
  MovieLinks links;
  readTitle(page, id, info);
  info.rating = duplicate(ratingOf(page));
  readPlot(page, info, links);
  info.company = duplicate(companyOf(page));
  info.mpaa = duplicate(certificateOf(page));
  info.poster = nullptr;
  links.photoPath = photoPathOf(page);
  info.country = countriesOf(page);
  readCast(page, info);
  info.genre = genresOf(page);
  info.director = directorsOf(page);
  return links;
}

Outcome fetchMovie(const char* id, const Context& context, velMovieInfo_& info) {
  const FilePage page = fetchToFile(std::string(IMDB_AKAS_BASE) + "/title/" + id + "/combined",
                                    movieInfoPage, context);
  if (!page.text) {
    return {page.status, Reason::kNoPage};
  }
  const MovieLinks links = readCombinedPage(*page.text, id, info);
  if (links.plotSummary) {
    setPlot(imdbGetPlotSummary(id, context), info);
  }
  if (links.photoPath && isSitePath(*links.photoPath)) {
    const FilePage photo = fetchToFile(
        std::string(IMDB_AKAS_BASE).append(*links.photoPath).append("/"), moviePhotoPage, context);
    info.poster = photo.text ? duplicate(primaryImageOf(*photo.text)) : nullptr;
  }
  return {page.status};
}

}  // namespace libquilp
