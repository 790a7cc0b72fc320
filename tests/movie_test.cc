#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>

#include "imdb/enrichment.h"
#include "imdb/find_page.h"
#include "imdb/title_page.h"
#include "imdb/title_search.h"
#include "movie/details.h"
#include "movie/search.h"
#include "support.h"

// Cutting pages, without a fetch.

namespace libquilp {
namespace {

using std::string;
using testing::ElementsAre;
using testing::IsEmpty;

string text(const char* field) { return field != nullptr ? field : "(null)"; }

string found(const string& row) {
  const string text =
      "<table class=\"findList\"><td class=\"primary_photo\">" + row + "</tr></table>";
  FindPage page(text);
  FindRow cut;
  EXPECT_TRUE(page.next(cut));
  FindRow none;
  EXPECT_FALSE(page.next(none));
  const auto show = [](Cut field) { return string(field.value_or("(none)")); };
  return show(cut.id) + "|" + show(cut.title) + "|" + show(cut.date);
}

TEST(FindPageRow, CutsIdentifierTitleAndYear) {
  const string link = "<a href=\"/title/tt1/?x\"></a><td class=\"result_text\"><a href=\"#\">";
  EXPECT_EQ(found(link + "A &amp; B</a> (I) (2010) (Video)</td>"), "tt1|A &amp; B|2010");
  EXPECT_EQ(found(link + " A </a> (TV Series) (2010-) </td>"), "tt1| A |");
  EXPECT_EQ(found(link + "A</a> () (2010)</td>"), "tt1|A|");
  EXPECT_EQ(found(link + "A (1999)</a></td> (2010)"), "tt1|A (1999)|2010");
  EXPECT_EQ(found(link + "A</a> (20\xB2) (2010</td>"), "tt1|A|");
  EXPECT_EQ(found(link + "A</a> (2010)"), "tt1|A|(none)");
  EXPECT_EQ(found(link + "A</td>"), "tt1|(none)|(none)");
  EXPECT_EQ(found("/title/tt1/\">"), "(none)|(none)|(none)");
  // The cell's first link has no ">" of its own: the title is the rest of the row.
  EXPECT_EQ(found("<td class=\"result_text\">A</a> B (7)</td>"), "(none)| B (7)</td>|7");
}

TEST(FindPageTable, HoldsTheRows) {
  FindRow row;
  for (const char* page : {"", "<table class=\"findList\"><td class=\"primary_photo\"></tr>",
                           "<td class=\"primary_photo\"></tr><table class=\"findList\"></table>",
                           "<table class=\"findList\"><td class=\"primary_photo\"></table></tr>"}) {
    EXPECT_FALSE(FindPage(page).next(row)) << page;
  }
}

string outlineOf(const string& summary) {
  const Outline outline = imdbExtractOutline(
      "<div class=\"summary_text\" itemprop=\"description\">" + summary + "</div>");
  return outline.isOnSummaryPage ? "(summary page)" : outline.text;
}

TEST(Outline, FollowsTheLinksOfTheSummary) {
  EXPECT_EQ(outlineOf("\n  A\nb &amp; c.&nbsp;  \n"), "Ab &amp; c.");
  EXPECT_EQ(outlineOf("A <a href=\"x\">See full synopsis</a>&nbsp;&raquo;"), "A");
  EXPECT_EQ(outlineOf("A <a x>link</a> b</a>"), "A link b");
  EXPECT_EQ(outlineOf("A <a x><a y>See full summary</a>"), "(summary page)");
  EXPECT_EQ(outlineOf("<a x>Add a Plot</a> See full summary &raquo;"), "");
  EXPECT_EQ(outlineOf("The plot is unknown at this time."), "");
  EXPECT_EQ(outlineOf("Plot is unknown <a x>but</a> linked"), "Plot is unknown but linked");
  EXPECT_EQ(outlineOf("See full synopsis stays without a link"),
            "See full synopsis stays without a link");
  EXPECT_EQ(outlineOf("a <a unclosed"), "a <a unclosed");
  EXPECT_EQ(outlineOf("<<a 1>a 2>x<a 3"), "x<a 3");  // a removal makes another link
  EXPECT_EQ(imdbExtractOutline("<div class=\"summary_text\" itemprop=\"description\">A").text, "");
}

TEST(Outline, IsDecodedUnlessItIsBlank) {
  const auto decodedOf = [](const string& summary) {
    return fetchOutline(
        "<div class=\"summary_text\" itemprop=\"description\">" + summary + "</div>", "'",
        Context());
  };
  EXPECT_EQ(decodedOf("&lt;&eacute;&#8212;"), "<\xC3\xA9\xE2\x80\x94");
  EXPECT_EQ(decodedOf("&nbsp; &nbsp;"), std::nullopt);
  EXPECT_EQ(decodedOf("   "), std::nullopt);
}

string alternate(const string& rows, int count) {
  const RecordArray<velMovie_> movies = readAlternatePage(rows, count);
  string all;
  for (const velMovie_& m : movies) {
    for (const char* field : {m.url, m.id, m.title, m.year, m.outline}) {
      all += (field != nullptr ? string(field) : "-") + "|";
    }
  }
  return all;
}

TEST(AlternatePage, CutsFieldsInTheirOrder) {
  const string row =
      "<td class=\"number\">1.</td><img src=\"u\" x> <a href=\"/title/tt1/\">"
      "A&#x26;&#39;\nB</a> <span class=\"year_type\">(2010)</span>"
      "<span class=\"outline\">O</span></tr>";
  EXPECT_EQ(alternate(row, 1), "u|tt1|A&'B|2010|O|");
  EXPECT_EQ(alternate(row + row + row, 2), "u|tt1|A&'B|2010|O|u|tt1|A&'B|2010|O|");
  EXPECT_EQ(alternate(row + row, 0), "u|tt1|A&'B|2010|O|");
  EXPECT_EQ(alternate("<td class=\"number\"><a href=\"/title/tt2/\">B</a></tr>", 3),
            "-|tt2|B|-|-|");
  EXPECT_EQ(alternate("<td class=\"number\">B</a><span class=\"year_type\">(20</tr>", 3),
            "-|-|-|20|-|");
}

class Details : public testing::Test {
 protected:
  void read(const string& page) {
    velFreeMovieInfo(&info);
    info = velMovieInfo_();
    readCombinedPage(page, "tt1", info);
  }
  void TearDown() override { velFreeMovieInfo(&info); }

  string titleOf(const string& title) {
    read("x<title>" + title + "</title>");
    return text(info.title) + "|" + text(info.year) + "|" + text(info.id);
  }

  velMovieInfo_ info = velMovieInfo_();
};

TEST_F(Details, TitleAndYear) {
  EXPECT_EQ(titleOf("A &amp; B (2010)"), "A & B|2010|tt1");
  EXPECT_EQ(titleOf("A (2010) (V)"), "A|2010|tt1");
  EXPECT_EQ(titleOf("A (2010/I)"), "A (2010/I|(null)|tt1");
  EXPECT_EQ(titleOf("A (TV 2010)"), "A (TV 2010|(null)|tt1");
  EXPECT_EQ(titleOf("A (B) (2010)"), "A |B) (|tt1");
  EXPECT_EQ(titleOf("A"), "A</title>|(null)|tt1");  // no end marker: to the end of the page
  EXPECT_EQ(titleOf("A (20)"), "A (20|(null)|tt1");
  read("no head");
  EXPECT_EQ(info.title, nullptr);
  EXPECT_EQ(info.id, nullptr);
}

TEST_F(Details, PlotEndsSixBytesBeforeItsSection) {
  const auto plot = [this](const string& block) {
    read("<h5>Plot" + block + "</div>");
    EXPECT_EQ(text(info.plot), text(info.outline));
    return text(info.plot);
  };
  const string content = ":</h5><div class=\"info-content\">";
  EXPECT_EQ(plot(content + "\n A &amp;\nB | <a class=\"x\">Add a Plot</a>123456"), "A &\nB");
  EXPECT_EQ(plot(content + "A <a class=\"x\">more</a>"), "A");
  EXPECT_EQ(plot(content + "A <a class=\"x\">Add a Plot</a>123456"), "");
  // The six bytes belong to the words that tell what to do.
  EXPECT_EQ(plot(content + "A <a class=\"x\">Add a Plot"), "A");
  EXPECT_EQ(plot(content + "A <a class=\"x\"> | <b>123456"), "A");
}

TEST_F(Details, APlotWithoutItsLinkIsOutOfRange) {
  for (const char* plot : {"<h5>Plot:</h5><div class=\"info-content\">A | <b>123456</div>",
                           "<h5>Plot: <a class=\"x\">123456</div>", "<h5>Plot</div>", "<h5>Plot"}) {
    velFreeMovieInfo(&info);
    info = velMovieInfo_();
    try {
      readCombinedPage(
          "<title>A (2010)</title><div class=\"starbar-meta\"><b>7.5/10</b></div>" + string(plot),
          "tt1", info);
      ADD_FAILURE() << plot;
    } catch (const std::out_of_range& error) {
      EXPECT_STREQ(error.what(), "basic_string::substr");
    }
    EXPECT_EQ(text(info.title) + text(info.rating), "A7.5");
    EXPECT_EQ(info.plot, nullptr);
  }
}

TEST_F(Details, SingleFields) {
  read(
      "<h5>Company:</h5><div class=\"info-content\"><a href=\"/company/co1/\">A &amp; B</a>"
      "<a href=\"/company/co2/\">C</a>"
      "MPAA</a>:</h5><div class=\"info-content\">Rated PG-13 for x"
      "<a href=\"/search/title?certificates=us:r\">USA:R</a>");
  EXPECT_STREQ(info.company, "A &amp; B");
  EXPECT_STREQ(info.mpaa, "PG-13");
  EXPECT_EQ(info.rating, nullptr);
  EXPECT_EQ(info.poster, nullptr);
  read(
      "<div class=\"starbar-meta\">x</div><b>9/10"
      "USA:no<a href=\"/search/title?certificates=us:r\">USA:R</a>");
  EXPECT_STREQ(info.mpaa, "R");
  EXPECT_EQ(info.rating, nullptr);
  EXPECT_EQ(primaryImageOf("<img id=\"primary-img\" src=\"u\" />"), "u");
  EXPECT_EQ(primaryImageOf("<img id=\"primary-img\" /> src=\"u\""), std::nullopt);
}

TEST_F(Details, ListsAreClearedAndCutFromTheirSections) {
  info.country = info.genre = info.director = info.actor = info.role = {"old"};
  readCombinedPage(
      "<h5>Country:</h5><a href=\"/country/us\">USA</a> <a "
      "href=\"/country/fr\">Fran&ccedil;a</a></div>"
      "<a href=\"/country/de\">Germany</a>"
      "<h5>Genre:</h5><a href=\"/Sections/Genres/Film-Noir/\">x</a>"
      "<a href=\"/Sections/Genres/Drama/\">y</a></div>"
      "<h5>Directors:</h5><a .src='/rg/directorlist/position-1/x';\">D &amp; E</a>"
      "<a .src='/rg/directorlist/position-2/x/';\">F</a></div>",
      "tt1", info);
  EXPECT_THAT(info.country, ElementsAre("USA", "Fran&ccedil;a"));
  EXPECT_THAT(info.genre, ElementsAre("Film-Noir", "Drama"));
  EXPECT_THAT(info.director, ElementsAre("F"));
  EXPECT_THAT(info.actor, IsEmpty());
  EXPECT_THAT(info.role, IsEmpty());
}

TEST_F(Details, CastAndRolesArePaired) {
  const auto actor = [](const string& name) {
    return "<a .src='/rg/castlist/position-1/x/';\">" + name + "</a>";
  };
  const auto role = [](const string& cell) { return "<td class=\"char\">" + cell + "</td>"; };
  const string link = "<a href=\"/character/ch1/\">R &amp; S</a>";
  read("<h3>Cast</h3>" + actor("A &eacute;") + role(link + " (x)") + actor("B") + role("") +
       actor("C") + role(" as <b>&quot;x&quot; ") + "<form action=\"/character/create\"" +
       actor("late"));
  EXPECT_THAT(info.actor, ElementsAre("A \xC3\xA9", "B", "C"));
  EXPECT_THAT(info.role, ElementsAre("R & S", "", " as <b>\"x\" "));
  // An actor without a cell takes the next one's.
  read("<h3>Cast</h3>" + actor("A") + actor("B") + role("b") + actor("C") + role("c"));
  EXPECT_THAT(info.actor, ElementsAre("A", "C"));
  EXPECT_THAT(info.role, ElementsAre("b", "c"));
}

TEST_F(Details, APageMayEndAnywhere) {
  const string page =
      "<title>A (2010)</title><div class=\"starbar-meta\"><b>7.5/10</b></div>"
      "<h5>Plot:</h5><div class=\"info-content\">P | <a class=\"x\">more</a> 123456</div>"
      "<h5>Company:</h5><div class=\"info-content\"><a href=\"/company/co1/\">C</a>"
      "<h5>Country:</h5><a href=\"/country/us\">USA</a></div>"
      "<h3>Cast</h3><a .src='/rg/castlist/position-1/x/';\">A</a><td class=\"char\">"
      "<a href=\"/character/ch1/\">R</a></td><form action=\"/character/create\""
      "<h5>Genre:</h5><a href=\"/Sections/Genres/Drama/\">x</a></div>"
      "<h5>Director:</h5><a .src='/rg/directorlist/position-1/x/';\">D</a></div>";
  int thrown = 0;
  for (size_t size = 0; size <= page.size(); ++size) {
    try {
      read(page.substr(0, size));
    } catch (const std::out_of_range&) {
      ++thrown;
    }
  }
  // Only between the plot's heading and its link.
  EXPECT_EQ(thrown, static_cast<int>(page.find("<a class") + 8 - (page.find("<h5>Plot") + 8)));
  EXPECT_THAT(info.director, ElementsAre("D"));
}

TEST(Enrich, NoThreadOutlivesItsRecords) {
  static std::atomic<int> ended{0};
  {
    Enrichment left(6, "x", Context(), [](void*) -> void* {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      ++ended;
      return nullptr;
    });
    for (int i = 0; i < 6; ++i) {
      left.start(i, "tt1");
    }
  }
  EXPECT_EQ(ended, 6);
}

TEST(Enrich, BuffersAreCutBetweenCharacters) {
  MovieWorkRecord record = {};
  string id(62, 'x');
  Enrichment one(1, "x", Context(), [](void*) -> void* { return nullptr; });
  one.start(0, (id + "\xC3\xA9y").c_str());
  EXPECT_EQ(one.join(0).id, id);
  Enrichment many(100, "x", Context(), [](void* work) -> void* {
    auto* found = static_cast<MovieWorkRecord*>(work);
    std::strcpy(found->image, found->id);
    return nullptr;
  });
  for (int i = 0; i < 100; ++i) {
    many.start(i, i % 2 == 0 ? std::to_string(i).c_str() : nullptr);
  }
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(many.join(i).image, i % 2 == 0 ? std::to_string(i) : "");
  }
  enrichFromTitlePage(&record);  // an empty identifier is not fetched
  EXPECT_STREQ(record.image, "");
}

}  // namespace
}  // namespace libquilp
