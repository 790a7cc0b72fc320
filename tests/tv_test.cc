#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex.h>

#include <clocale>
#include <random>
#include <stdexcept>
#include <string>

#include "imdb/title_details.h"
#include "imdb/title_page.h"
#include "tv/details.h"
#include "tv/search.h"

// Cutting pages, without a fetch.

namespace libquilp {
namespace {

using std::string;
using testing::ElementsAre;
using testing::IsEmpty;

string text(const char* field) { return field != nullptr ? field : "(null)"; }

string cut(string role) {
  cutRole(role);
  return role;
}

TEST(RoleCut, EndsBehindTheFirstRunOfWords) {
  // In the second locale letters are more than bytes.
  for (const char* locale : {"C", "C.UTF-8"}) {
    ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
    EXPECT_EQ(cut("Jane Doe / Narrator"), "Jane Doe ");
    EXPECT_EQ(cut("12 (x) O'Neil?? ... more"), "12 (x) O'Neil?? ");
    EXPECT_EQ(cut("1 2 3"), "1 2 3");  // nothing to cut at
    EXPECT_EQ(cut("a\nb/"), "a\nb");
    // Half a letter matches, also of one that is not listed.
    EXPECT_EQ(cut("Éa / Narrator"), "Éa ");
    EXPECT_EQ(cut("a-\x82\xBF\xB0\xB7\xB0"), "a-\x82\xBF\xB0");
  }
  std::setlocale(LC_ALL, "C");
}

TEST(RoleCut, IsTheRegularExpressionOfTheCLocale) {
  const string set = "a-zA-Z'?áâäãåèéêëìíîïòóôöõøùúûüÿýñçšžŸŽð\x82";
  regex_t pattern;
  ASSERT_EQ(regcomp(&pattern, ("[" + set + "].[" + set + " ]+").c_str(), REG_EXTENDED), 0);
  std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
  int matched = 0;
  for (int i = 0; i < 20000; ++i) {
    string role(random() % 12, '\0');
    for (char& c : role) {
      // Half the bytes match; any but zero occurs.
      c = random() % 2 == 0 ? "aZ' \xC3"[random() % 5] : static_cast<char>(random() % 255 + 1);
    }
    regmatch_t match;
    const bool hit = regexec(&pattern, role.c_str(), 1, &match, 0) == 0;
    matched += hit ? 1 : 0;
    EXPECT_EQ(cut(role), hit ? role.substr(0, static_cast<size_t>(match.rm_eo)) : role);
  }
  EXPECT_GT(matched, 5000);
  EXPECT_LT(matched, 15000);
  regfree(&pattern);
}

const char kName[] = "<span class=\"itemprop\" itemprop=\"name\">";

string named(const string& name) { return kName + name + "</span>"; }

struct Cast {
  std::vector<string> names = {"old"};
  std::vector<string> roles = {"old"};

  explicit Cast(const string& rows, void (*shorten)(string&) = nullptr) {
    readCast("<table class=\"cast_list\">" + rows + "</table><tr class=x></tr>", names, roles,
             shorten);
  }
};

string row(const string& name, const string& cell) {
  return "<tr class=\"odd\">" + named(name) + "<td class=\"character\">" + cell + "</td></tr>";
}

TEST(CastTable, GivesActorsAndTheirRoles) {
  const string rows = row(" A ", "<div>\n R / S&nbsp; </div>") +
                      row("B", "<a href=\"/c/\" x>T U</a> / ...") + row("C", "<div></div>");
  const Cast whole(rows);
  EXPECT_THAT(whole.names, ElementsAre(" A ", "B", "C"));
  EXPECT_THAT(whole.roles, ElementsAre("R / S", "T U", ""));
  EXPECT_THAT(Cast(row("A", "<div>Jane Doe / Narrator</div>"), &cutRole).roles,
              ElementsAre("Jane Doe"));
  EXPECT_THAT(Cast("").names, IsEmpty());
}

TEST(CastTable, AnActorWithoutARoleHasNoEntry) {
  for (const string& none :
       {"<tr class=>" + named("A") + "</tr>",
        "<tr class=>" + named("A") + "<td class=\"character\"></tr>", row("A", "as himself"),
        row("A", "<div>x"), row("A", "<a href=\"/c/\">x<div>y</div>")}) {
    const Cast cast(none + row("B", "<div>S</div>"));
    EXPECT_THAT(cast.names, ElementsAre("A", "B")) << none;
    EXPECT_THAT(cast.roles, ElementsAre("S")) << none;
  }
  // The role in front of the name is none.
  EXPECT_THAT(
      Cast("<tr class=><td class=\"character\"><div>R</div></td>" + named("A") + "</tr>").roles,
      IsEmpty());
}

TEST(CastTable, ARowWithoutAMarkerIsCutAllTheSame) {
  const string gap(38, '.');  // one byte less than the marker's length
  EXPECT_THAT(Cast("<tr class=" + gap + "x y</tr>").names, ElementsAre("x y"));
  EXPECT_THAT(Cast("<tr class=" + gap + "</tr>").names, ElementsAre(""));
  const Cast ended("<tr class=" + gap + "x</span><td class=\"character\"><div>R</div></td></tr>");
  EXPECT_THAT(ended.names, ElementsAre("x"));
  EXPECT_THAT(ended.roles, ElementsAre("R"));
  const string open = kName + string("x<td class=\"character\"><div>R</div></td>");
  EXPECT_THAT(Cast("<tr class=" + open + "</tr>").names, ElementsAre(open.substr(39)));
  EXPECT_THAT(Cast("<tr class=" + open + "</tr>").roles, IsEmpty());
  try {
    const Cast cast("<tr class=" + gap.substr(1) + "</tr>");
    ADD_FAILURE();
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "basic_string::substr");
  }
}

class Show : public testing::Test {
 protected:
  void read(const string& page) {
    velFreeTVShowInfo(&info);
    info = velTVShowInfo();
    readShowPage(page, "tt1", {{}, fetchOutline(page, "tt1", Context())}, info);
  }
  void TearDown() override { velFreeTVShowInfo(&info); }

  string titleAndDates(const string& page) {
    read(page);
    return text(info.title) + "|" + text(info.first_air_date) + "|" + text(info.last_air_date);
  }

  velTVShowInfo info = velTVShowInfo();
};

const char kHead[] = "<h1 class=\"header\"> <span class=\"itemprop\" itemprop=\"name\">";
const char kDash[] = "\xE2\x80\x93";

TEST_F(Show, TitleAndYears) {
  const auto years = [this](const string& span) {
    return titleAndDates(string(kHead) + " A &amp; B </span> <span class=\"nobr\">(" + span +
                         ")</span></h1>");
  };
  EXPECT_EQ(years(string("2008") + kDash + "2013"), " A &amp; B |2008-01-01|2013-12-31");
  EXPECT_EQ(years(string("2008") + kDash + " "), " A &amp; B |2008-01-01|(null)");
  EXPECT_EQ(years("&nbsp;2008 "), " A &amp; B |2008-01-01|(null)");
  EXPECT_EQ(years(string("2008") + kDash + "9"), " A &amp; B |2008-01-01|9-12-31");
  EXPECT_EQ(years("2008-2013"), " A &amp; B |2008-2013-01-01|(null)");

  const string shared = "<h3>Share this Rating</h3> <p>Title: <strong>S</strong>\n(2009)</p>";
  EXPECT_EQ(titleAndDates(shared), "S|2009-01-01|(null)");
  // The header alone has the years once it is closed, and the title once its span is.
  EXPECT_EQ(titleAndDates(string(kHead) + "A</span></h1>" + shared), "A|(null)|(null)");
  EXPECT_EQ(titleAndDates(string(kHead) + "A</span>" + shared), "A|2009-01-01|(null)");
  EXPECT_EQ(titleAndDates(string(kHead) + "A</h1>" + shared), "S|(null)|(null)");
  EXPECT_EQ(titleAndDates("<h3>Share this Rating</h3>(1)<strong>S(2)</strong></p>(3)"),
            "S(2)|(null)|(null)");
  EXPECT_STREQ(info.id, "tt1");
}

TEST_F(Show, SingleFields) {
  read(
      "<link rel='image_src' href=\"p\"><div class=\"mediastrip\"><a href=\"/it's\"></div>"
      "<h4 class=\"inline\">Creators:</h4>" +
      named("C") + "," + named(" D ") + "</div>" + named("E") +
      "<span class=\"itemprop\" itemprop=\"genre\"> G </span>"
      "<h4 class=\"inline\">Runtime:</h4> <time x=\"PT\">49 min</time></div>"
      "<span class=\"rating\"> 8.5&nbsp;<span class=x>"
      "<div class=\"summary_text\" itemprop=\"description\"> A &amp; B </div>");
  EXPECT_EQ(text(info.poster) + "|" + text(info.banner) + "|" + text(info.duration) + "|" +
                text(info.rating) + "|" + text(info.outline),
            "p|(null)|49 min|8.5|A & B");
  EXPECT_THAT(info.creators, ElementsAre("C", " D "));
  EXPECT_THAT(info.genres, ElementsAre(" G "));
  read(
      "<div class=\"titlePageSprite star-box-giga-star\"> 7 </div><span class=\"rating\">8<span "
      "class=");
  EXPECT_STREQ(info.rating, "7");
  EXPECT_EQ(info.outline, nullptr);

  EXPECT_EQ(
      bannerOf(
          "<meta itemprop='image' content='m'/><a class=\"cursor-default\" ><img src=\"b\"></a>"),
      "b");
  EXPECT_EQ(bannerOf("<meta itemprop='image' content='m'/>"), "m");
  EXPECT_EQ(
      bannerOf("<meta itemprop='image' content='m'/>class=\"cursor-default\" >x</a>src=\"b\""),
      std::nullopt);
}

string listed(const string& id, const string& number) {
  return "<div class=\"image\"><div data-const=\"" + id + "\">" + number +
         "</div><div class=\"info\">";
}

string found(const string& entries, int season, int episode) {
  return string(
      episodeIdOf("<h3 id=\"episode_top\"  itemprop=\"name\">" + entries + "<hr>", season, episode)
          .value_or("(none)"));
}

TEST(EpisodeList, TakesTheFirstEntryWithTheNumber) {
  const string list =
      listed("tt1", "S2, Ep1") + listed("tt2", "S2, Ep2") + listed("tt10", "S2, Ep10");
  EXPECT_EQ(found(list, 2, 1), "tt1");
  EXPECT_EQ(found(list, 2, 10), "tt10");
  EXPECT_EQ(found(list, 2, 3), "(none)");
  EXPECT_EQ(found(list, 1, 1), "(none)");
  EXPECT_EQ(found(list, -2, 1), "(none)");
  EXPECT_EQ(found(listed("tt10", "S2, Ep10") + listed("tt1", "S2, Ep1"), 2, 1), "tt10");
  EXPECT_EQ(found("<div class=\"image\">S2, Ep1<div class=\"info\">" + list, 2, 1), "(none)");
  EXPECT_EQ(found("S2, Ep1<hr>" + list, 2, 1), "(none)");
  EXPECT_EQ(episodeIdOf(list + "<hr>", 2, 1), std::nullopt);
}

class Episode : public testing::Test {
 protected:
  void read(const string& page) {
    velFreeTVEpisode(&info);
    info = velTVEpisode();
    info.id = duplicate("'");
    readEpisodePage(page, 0, -1, {}, info);
  }
  void TearDown() override { velFreeTVEpisode(&info); }

  velTVEpisode info = velTVEpisode();
};

TEST_F(Episode, Fields) {
  read(
      "<meta property='og:title' content=\"&quot;S&quot; A &amp; B (TV Episode)\" />"
      "<meta itemprop=\"datePublished\" content=\"2009-03-01\" />"
      "<div class=\"poster\"><img src=\"t\"></div>"
      "<h4 class=\"inline\">Directors:</h4>" +
      named("D") + named("E") + "</div>");
  EXPECT_EQ(text(info.title) + "|" + text(info.air_date) + "|" + text(info.thumbnail) + "|" +
                text(info.season_number) + "|" + text(info.episode_number) + "|" +
                text(info.rating),
            "A &amp; B|2009-03-01|t|0|-1|(null)");
  EXPECT_THAT(info.directors, ElementsAre("D", "E"));
  // Both ends are searched from the same place: the first " (" stands in the show's name.
  read("<meta property='og:title' content=\"&quot;S (UK)&quot; A (TV)\">end");
  EXPECT_STREQ(info.title, "A (TV)\">end");
  read("<meta itemprop=\"datePublished\" /> content=\"2009\" />");
  EXPECT_STREQ(info.air_date, "2009\" />");
  // An address has at least one byte.
  read("<div class=\"poster\"><img src=\"\" alt=\"x\">");
  EXPECT_STREQ(info.thumbnail, "\" alt=");
  // Six bytes belong to the heading, whatever they are.
  read("<h4 class=\"inline\">Director</div>" + named("D") + "</div>");
  EXPECT_THAT(info.directors, ElementsAre("D"));
  read("<h4 class=\"inline\">Director</div>");
  EXPECT_THAT(info.directors, IsEmpty());
}

TEST(TitlePages, MayEndAnywhere) {
  const string page =
      string(kHead) + "A</span><span class=\"nobr\">(2008" + kDash + "2013)</span></h1>" +
      "<meta property='og:title' content=\"&quot;S&quot; A (TV)\" />" +
      "<div class=\"poster\"><img src=\"t\"></div>"
      "<h4 class=\"inline\">Director:</h4>" +
      named("D") + "</div>" + "<table class=\"cast_list\">" + row("A", "<div>R</div>") +
      "</table>" + "<h4 class=\"inline\">Runtime:</h4><time x=\"PT\">49 min</time></div>";
  for (size_t size = 0; size <= page.size(); ++size) {
    velTVShowInfo show = velTVShowInfo();
    velTVEpisode episode = velTVEpisode();
    episode.id = duplicate("'");
    readShowPage(page.substr(0, size), "tt1", {}, show);
    readEpisodePage(page.substr(0, size), 1, 1, {}, episode);
    EXPECT_EQ(show.duration != nullptr, size >= page.size());
    EXPECT_EQ(show.actor_roles.size(), show.actor_names.size());
    velFreeTVShowInfo(&show);
    velFreeTVEpisode(&episode);
  }
}

}  // namespace
}  // namespace libquilp
