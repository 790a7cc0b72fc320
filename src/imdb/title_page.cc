#include "imdb/title_page.h"

#include <algorithm>

#include "libquilp.h"
#include "platform.h"
#include "plugin/page_fetch.h"
#include "text/entities.h"
#include "text/removal.h"

namespace libquilp {
namespace {

/// Removes every "<a …>", also one that the removal of another makes.
void removeLinkStarts(std::string& text) {
  std::size_t kept = 0;
  for (std::size_t read = 0; read < text.size(); ++read) {
    text[kept++] = text[read];
    if (kept < 2 || text[kept - 2] != '<' || text[kept - 1] != 'a') {
      continue;
    }
    const std::size_t end = text.find('>', read);
    if (end == std::string::npos) {
      text.replace(kept, std::string::npos, text, read + 1);
      return;
    }
    kept -= 2;
    read = end;
  }
  text.resize(kept);
}

bool hasLink(std::string_view text) {
  const std::size_t start = text.find("<a");
  return start != std::string_view::npos && text.find('>', start) != std::string_view::npos;
}

std::string& cleaned(std::string& text) {
  removeAll(text, '\n');
  return removeEmptyChar(text);
}

}  // namespace

std::string titleAddress(const std::string& id, const char* reference) {
  return std::string(IMDB_MAIN_BASE) + "/title/" + id + "/?ref_=" + reference;
}

// <link rel='image_src' href="ADDRESS">
Cut posterOf(std::string_view page) {
  return Cutter(page).between("<link rel='image_src' href=\"", "\">");
}

// <div class="summary_text" itemprop="description">
//   OUTLINE <a href="/title/ID/plotsummary?…">See full summary</a>&nbsp;&raquo; </div>
Outline imdbExtractOutline(std::string_view page) {
  const Cut summary =
      Cutter(page).between("<div class=\"summary_text\" itemprop=\"description\">", "</div>");
  if (!summary) {
    return {};
  }
  std::string text(*summary);
  if (hasLink(text)) {
    removeLinkStarts(text);
    removeAll(text, "</a>");
    if (contains(text, "Add a Plot")) {
      return {};
    }
    if (contains(text, "See full summary")) {
      return {{}, true};
    }
    text.resize(std::min(text.size(), text.find("See full synopsis")));
  } else if (contains(text, "Plot is unknown") || contains(text, "The plot is unknown")) {
    return {};
  }
  return {cleaned(text)};
}

// <p class="plotSummary">PARAGRAPH</p>
std::string plotSummaryOf(std::string_view page) {
  const Cut summary = Cutter(page).between("class=\"plotSummary\">", "</p>");
  if (!summary ||
      contains(*summary, "It looks like we don't have any Plot Summary for this title yet.")) {
    return {};
  }
  return std::string(*summary);
}

std::string summaryAddress(const char* id) {
  return std::string(IMDB_MAIN_BASE) + "/title/" + id + "/plotsummary";
}

std::optional<std::string> decodedOutline(std::string_view text) {
  if (text.find_first_not_of(' ') == std::string_view::npos) {
    return {};
  }
  return decoded(text);
}

std::optional<std::string> outlineOfSummaryPage(std::string_view page) {
  std::string summary = plotSummaryOf(page);
  return decodedOutline(cleaned(summary));
}

std::string imdbGetPlotSummary(const char* id, const Context& context) {
  const auto page = fetchThroughPipe(summaryAddress(id), context);
  return page ? plotSummaryOf(*page) : std::string();
}

std::optional<std::string> fetchOutline(std::string_view page, const char* id,
                                        const Context& context) {
  Outline outline = imdbExtractOutline(page);
  if (outline.isOnSummaryPage) {
    std::string summary = imdbGetPlotSummary(id, context);
    outline.text = cleaned(summary);
  }
  return decodedOutline(outline.text);
}

}  // namespace libquilp
