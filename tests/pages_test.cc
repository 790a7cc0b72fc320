// How pages are cut: each is served at every address by a script in the place of the client.

#include <gtest/gtest.h>
#include <regex.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <random>

#include "lookups.h"
#include "support.h"

namespace {

using std::string;
using test::Answer;
using test::ask;

class Page : public testing::Test {
 protected:
  void SetUp() override {
    test::writeFile("/etc/config/zorp.conf", "");
    std::remove("/sbin/curl");
    ASSERT_EQ(symlink(QUILP_TESTS "/curl.sh", "/sbin/curl"), 0);
  }
  void TearDown() override {
    std::remove("/sbin/curl");
    ASSERT_EQ(symlink("/usr/bin/curl", "/sbin/curl"), 0);
  }

  static Answer read(const string& function, const string& page, int count = 1) {
    test::writeFile("/etc/config/page", page);
    return ask(function, {"tt1", count, "", "en", 0, -1});
  }
};

struct Case {
  string page;
  string text;
};

const string kCell = "<td class=\"primary_photo\">";
const string kLink = "<a href=\"/title/tt1/?x\"></a><td class=\"result_text\"><a href=\"#\">";
string found(const string& rows) { return "<table class=\"findList\">" + rows + "</table>"; }
string row(const string& row) { return kCell + row + "</tr>"; }

TEST_F(Page, OfResultsIsCutIntoRows) {
  // clang-format off
  const Case cases[] = {
    {row(kLink + "A &amp; B</a> (I) (2010) (Video)</td>"), "id:tt1|title:A &amp; B|year:2010|"},
    {row(kLink + " A </a> (TV Series) (2010-) </td>"), "id:tt1|title: A |year:|"},
    {row(kLink + "A</a> () (2010)</td>"), "id:tt1|title:A|year:|"},
    {row(kLink + "A (1999)</a></td> (2010)"), "id:tt1|title:A (1999)|year:2010|"},
    {row(kLink + "A</a> (20\xB2) (2010</td>"), "id:tt1|title:A|year:|"},
    {row(kLink + "A</a> (2010)"), "id:tt1|title:A|"},
    {row(kLink + "A</td>"), "id:tt1|"},
    {row("/title/tt1/\">"), ""},
    // The cell's first link has no ">" of its own: the title is the rest of the row.
    {row("<td class=\"result_text\">A</a> B (7)</td>"), "title: B (7)</td>|year:7|"},
    {row(kLink + "A</a> (1)</td>") + row(kLink + "B</a> (2)</td>"), "id:tt1|title:A|year:1|"},
  };
  // clang-format on
  for (const auto& [rows, text] : cases) {
    EXPECT_EQ(read("imdbBasicGetMovies", found(rows)).text, text + "url:|outline:|") << rows;
  }
  for (const string& none :
       {string(), found(kCell + "</table></tr>"), row("") + "<table class=\"findList\"></table>",
        "<table class=\"findList\">" + row("")}) {
    const Answer answer = read("imdbBasicGetMovies", none);
    EXPECT_EQ(std::to_string(answer.result) + answer.text, "0") << none;
  }
}

TEST_F(Page, OfResultsFillsBuffersUpToACharacter) {
  const string id(62, 'x');
  read("imdbBasicGetMovies", found(row("/title/" + id + "\xC3\xA9y/?")));
  EXPECT_NE(test::readFile("/etc/config/asked").find("/title/" + id + "/?ref_="), string::npos);
  string rows;
  for (int i = 0; i < 100; ++i) {
    rows += row(i % 2 == 0 ? "/title/" + std::to_string(i) + "/?" : "");
  }
  const string address = string(2046, 'p') + "\xC3\xA9";
  const string outline = string(2045, 'o') + "\xE5\x9B\xBD";
  const Answer many =
      read("imdbBasicGetMovies",
           found(rows) + "<link rel='image_src' href=\"" + address + "\">" +
               "<div class=\"summary_text\" itemprop=\"description\">" + outline + "</div>",
           100);
  EXPECT_EQ(many.result, 100);
  const string first =
      "id:0|url:" + address.substr(0, 2046) + "|outline:" + outline.substr(0, 2045);
  EXPECT_EQ(many.text.substr(0, many.text.find("\nid:2|")), first + "|\nurl:|outline:|");
}

TEST_F(Page, OfATitleGivesItsOutline) {
  // clang-format off
  const Case cases[] = {
    {"\n  A\nb &amp; c.&nbsp;  \n", "Ab & c."},
    {"A <a href=\"x\">See full synopsis</a>&nbsp;&raquo;", "A"},
    {"A <a x>link</a> b</a>", "A link b"},
    {"A <a x><a y>See full summary</a>", "S &"},
    {"<a x>Add a Plot</a> See full summary &raquo;", ""},
    {"The plot is unknown at this time.", ""},
    {"Plot is unknown <a x>but</a> linked", "Plot is unknown but linked"},
    {"See full synopsis stays without a link", "See full synopsis stays without a link"},
    {"a <a unclosed", "a <a unclosed"},
    {"<<a 1>a 2>x<a 3", "x<a 3"},  // a removal makes another link
    {"&lt;&eacute;&#8212;", "<\xC3\xA9\xE2\x80\x94"},
    {"&nbsp; &nbsp;", ""},
    {"   ", ""},
  };
  // clang-format on
  for (const auto& [summary, outline] : cases) {
    const string page = found(row("/title/tt1/?")) +
                        "<div class=\"summary_text\" itemprop=\"description\">" + summary +
                        "</div><p class=\"plotSummary\"> S &amp; </p>";
    EXPECT_EQ(read("imdbBasicGetMovies", page).text, "id:tt1|url:|outline:" + outline + "|")
        << page;
  }
}

TEST_F(Page, OfTheAlternateSearchIsCutInOrder) {
  const string whole =
      "<td class=\"number\">1.</td><img src=\"u\" x> <a href=\"/title/tt1/\">"
      "A&#x26;&#39;\nB</a> <span class=\"year_type\">(2010)</span>"
      "<span class=\"outline\">O</span></tr>";
  const string text = "id:tt1|title:A&'B|year:2010|url:u|outline:O|";
  const auto alternate = [](const string& page, int count) {
    return read("imdbGetMovies", page, count).text;
  };
  EXPECT_EQ(alternate(whole, 1), text);
  EXPECT_EQ(alternate(whole + whole + whole, 2), text + "\n" + text);
  EXPECT_EQ(alternate(whole + whole, 0), text);
  EXPECT_EQ(alternate("<td class=\"number\"><a href=\"/title/tt2/\">B</a></tr>", 3),
            "id:tt2|title:B|");
  EXPECT_EQ(alternate("<td class=\"number\">B</a><span class=\"year_type\">(20</tr>", 3),
            "year:20|");
}

const string kPlot = "<h5>Plot:</h5><div class=\"info-content\">";
const string kCast = "<h3>Cast</h3>";
string actor(const string& name) {
  return "<a .src='/rg/castlist/position-1/x/';\">" + name + "</a>";
}
string role(const string& cell) { return "<td class=\"char\">" + cell + "</td>"; }

TEST_F(Page, OfAMovieIsCutIntoDetails) {
  // clang-format off
  const Case cases[] = {
    {"x<title>A &amp; B (2010)</title>", "id:tt1|title:A & B|year:2010|"},
    {"<title>A (2010) (V)</title>", "id:tt1|title:A|year:2010|"},
    {"<title>A (2010/I)</title>", "id:tt1|title:A (2010/I|"},
    {"<title>A (TV 2010)</title>", "id:tt1|title:A (TV 2010|"},
    {"<title>A (B) (2010)</title>", "id:tt1|title:A |year:B) (|"},
    {"<title>A</title>", "id:tt1|title:A</title>|"},  // no end marker: to the end of the page
    {"<title>A (20)</title>", "id:tt1|title:A (20|"},
    {"no head", ""},

    // A plot ends six bytes before its section does.
    {kPlot + "\n A &amp;\nB | <a class=\"x\">Add a Plot</a>123456</div>", "plot:A &\nB|outline:A &\nB|"},
    {kPlot + "A <a class=\"x\">more</a></div>", "plot:A|outline:A|"},
    {kPlot + "A <a class=\"x\">Add a Plot</a>123456</div>", "plot:|outline:|"},
    {kPlot + "A <a class=\"x\">Add a Plot12345</div>", "plot:A|outline:A|"},
    {kPlot + "A <a class=\"x\"> | <b>123456</div>", "plot:A|outline:A|"},
    {kPlot + "A <a class=\"x\">See more</a>123456</div>class=\"plotSummary\">&lt;</p>",
     "plot:<|outline:<|"},

    {"<div class=\"starbar-meta\"><b>7.5/10</b></div>", "rating:7.5|"},
    {"<div class=\"starbar-meta\">x</div><b>9/10", ""},
    {"<h5>Company:</h5><div class=\"info-content\"><a href=\"/company/co1/\">A &amp; B</a>"
     "<a href=\"/company/co2/\">C</a>", "company:A &amp; B|"},
    {"MPAA</a>:</h5><div class=\"info-content\">Rated PG-13 for x"
     "<a href=\"/search/title?certificates=us:r\">USA:R</a>", "mpaa:PG-13|"},
    {"USA:no<a href=\"/search/title?certificates=us:r\">USA:R</a>", "mpaa:R|"},
    {"<div class=\"photo\"><a name=\"poster\" href=\"/p\"></a></div>"
     "<img id=\"primary-img\" src=\"u\" />", "poster:u|"},
    {"<div class=\"photo\"><a name=\"poster\" href=\"/p\"></a></div>"
     "<img id=\"primary-img\" /> src=\"u\"", ""},
    {"<div class=\"photo\"><a name=\"poster\" href=\".example/p\"></a></div>"
     "<img id=\"primary-img\" src=\"u\" />", ""},  // another host's

    {"<h5>Country:</h5><a href=\"/country/us\">USA</a> <a href=\"/country/fr\">Fran&ccedil;a</a>"
     "</div><a href=\"/country/de\">Germany</a>", "country:USA;Fran&ccedil;a|"},
    {"<h5>Genre:</h5><a href=\"/Sections/Genres/Film-Noir/\">x</a>"
     "<a href=\"/Sections/Genres/Drama/\">y</a></div>", "genre:Film-Noir;Drama|"},
    {"<h5>Directors:</h5><a .src='/rg/directorlist/position-1/x';\">D &amp; E</a>"
     "<a .src='/rg/directorlist/position-2/x/';\">F</a></div>", "director:F|"},
    {kCast + actor("A &eacute;") + role("<a href=\"/character/ch1/\">R &amp; S</a> (x)") +
     actor("B") + role("") + actor("C") + role(" as <b>&quot;x&quot; ") +
     "<form action=\"/character/create\"" + actor("late"),
     "actor:A \xC3\xA9;B;C|role:R & S;; as <b>\"x\" |"},
    // An actor without a cell takes the next one's.
    {kCast + actor("A") + actor("B") + role("b") + actor("C") + role("c"), "actor:A;C|role:b;c|"},
  };
  // clang-format on
  for (const auto& [page, text] : cases) {
    EXPECT_EQ(read("velGetMovieByID", page).text, text) << page;
  }
  // A plot section without its link is out of range.
  for (const string& plot :
       {kPlot + "A | <b>123456</div>", string("<h5>Plot: <a class=\"x\">123456</div>"),
        string("<h5>Plot</div>"), string("<h5>Plot")}) {
    const Answer answer = read("velGetMovieByID", "<title>A (2010)</title>" + plot);
    EXPECT_EQ(answer.result, test::kOutOfRange) << plot;
    EXPECT_EQ(answer.text, "id:tt1|title:A|year:2010|") << plot;
  }
}

const string kDash = "\xE2\x80\x93";
const string kName = "<span class=\"itemprop\" itemprop=\"name\">";
const string kHead = "<h1 class=\"header\"> " + kName;
const string kShared = "<h3>Share this Rating</h3> <p>Title: <strong>S</strong>\n(2009)</p>";
string name(const string& name) { return kName + name + "</span>"; }
string years(const string& span) {
  return kHead + "A</span> <span class=\"nobr\">(" + span + ")</span></h1>";
}
string cast(const string& rows) {
  return "<table class=\"cast_list\">" + rows + "</table><tr class=x></tr>";
}
string cast(const string& name, const string& cell) {
  return "<tr class=\"odd\">" + kName + name + "</span><td class=\"character\">" + cell +
         "</td></tr>";
}
const string kNoRole = cast("B", "<div>S</div>");

TEST_F(Page, OfAShowIsCutIntoDetails) {
  const string gap(38, '.');  // one byte less than the marker of a name
  const string open = kName + "x<td class=\"character\"><div>R</div></td>";
  const string strip = "<div class=\"mediastrip\"><a href=\"/p\"></div>";
  // clang-format off
  const Case cases[] = {
    {kHead + " A &amp; B </span></h1>", "title: A &amp; B |"},
    {years("2008" + kDash + "2013"), "title:A|first:2008-01-01|last:2013-12-31|"},
    {years("2008" + kDash + " "), "title:A|first:2008-01-01|"},
    {years("&nbsp;2008 "), "title:A|first:2008-01-01|"},
    {years("2008" + kDash + "9"), "title:A|first:2008-01-01|last:9-12-31|"},
    {years("2008-2013"), "title:A|first:2008-2013-01-01|"},
    {kShared, "title:S|first:2009-01-01|"},
    // The header alone has the years once it is closed, and the title once its span is.
    {kHead + "A</span></h1>" + kShared, "title:A|"},
    {kHead + "A</span>" + kShared, "title:A|first:2009-01-01|"},
    {kHead + "A</h1>" + kShared, "title:S|"},
    {"<h3>Share this Rating</h3>(1)<strong>S(2)</strong></p>(3)", "title:S(2)|"},

    {"<link rel='image_src' href=\"p\">", "poster:p|"},
    {strip + "<meta itemprop='image' content='m'/><a class=\"cursor-default\" ><img src=\"b\"></a>",
     "banner:b|"},
    {strip + "<meta itemprop='image' content='m'/>", "banner:m|"},
    {strip + "<meta itemprop='image' content='m'/>class=\"cursor-default\" >x</a>src=\"b\"", ""},
    {"<div class=\"mediastrip\"><a href=\"it's\"></div><meta itemprop='image' content='m'/>", ""},
    {"<h4 class=\"inline\">Creators:</h4>" + name("C") + "," + name(" D ") + "</div>" + name("E"),
     "creator:C; D |"},
    {"<span class=\"itemprop\" itemprop=\"genre\"> G </span>", "genre: G |"},
    {"<h4 class=\"inline\">Runtime:</h4> <time x=\"PT\">49 min</time></div>", "duration:49 min|"},
    {"<span class=\"rating\"> 8.5&nbsp;<span class=x>", "rating:8.5|"},
    {"<div class=\"titlePageSprite star-box-giga-star\"> 7 </div><span class=\"rating\">8<span "
     "class=", "rating:7|"},
    {"<div class=\"summary_text\" itemprop=\"description\"> A &amp; B </div>", "outline:A & B|"},

    {cast(cast(" A ", "<div>\n R / S&nbsp; </div>") +
          cast("B", "<a href=\"/c/\" x>Tom U</a> / ...") + cast("C", "<div></div>")),
     "actor: A ;B;C|role:R / S;Tom U;|"},
    {cast(cast("A", "<div>Jane Doe / Narrator</div>")), "actor:A|role:Jane Doe|"},
    {cast("<tr class=>" + name("A") + "</tr>" + kNoRole), "actor:A;B|role:S|"},
    {cast("<tr class=>" + name("A") + "<td class=\"character\"></tr>" + kNoRole),
     "actor:A;B|role:S|"},
    {cast(cast("A", "as himself") + kNoRole), "actor:A;B|role:S|"},
    {cast(cast("A", "<div>x") + kNoRole), "actor:A;B|role:S|"},
    {cast(cast("A", "<a href=\"/c/\">x<div>y</div>") + kNoRole), "actor:A;B|role:S|"},
    // The role in front of the name is none.
    {cast("<tr class=><td class=\"character\"><div>R</div></td>" + name("A") + "</tr>"), "actor:A|"},
    // A row without a marker is cut all the same.
    {cast("<tr class=" + gap + "x y</tr>"), "actor:x y|"},
    {cast("<tr class=" + gap + "</tr>"), "actor:|"},
    {cast("<tr class=" + gap + "x</span><td class=\"character\"><div>R</div></td></tr>"),
     "actor:x|role:R|"},
    {cast("<tr class=" + open + "</tr>"), "actor:" + open.substr(39) + "|"},
  };
  // clang-format on
  for (const auto& [page, text] : cases) {
    EXPECT_EQ(read("velGetTVShowByID", page).text, "id:tt1|" + text) << page;
  }
  const Answer tooShort = read("velGetTVShowByID", cast("<tr class=" + gap.substr(1) + "</tr>"));
  EXPECT_EQ(tooShort.result, test::kOutOfRange);
}

TEST_F(Page, OfAnEpisodeIsFoundInItsSeasonAndCut) {
  const auto listed = [](const string& id, const string& number) {
    return "<div class=\"image\"><div data-const=\"" + id + "\">" + number +
           "</div><div class=\"info\">";
  };
  const string top = "<h3 id=\"episode_top\"  itemprop=\"name\">";
  const string list = listed("tt3", "S0, Ep-11") + listed("tt1", "S0, Ep-1") + "<hr>";
  // clang-format off
  const Case cases[] = {
    {top + listed("tt4", "S2, Ep-1") + listed("tt2", "S0, Ep-1") + list, "id:tt2|"},
    {top + list, "id:tt3|"},
    {top + "<div class=\"image\">S0, Ep-1<div class=\"info\">" + list, ""},
    {top + "S0, Ep-1<hr>" + list, ""},
    {top + listed("tt1", "S1, Ep-1") + "<hr>", ""},
    {list, ""},
    {top + listed("tt1", "S0, Ep-1"), ""},
  };
  const Case details[] = {
    {"<meta property='og:title' content=\"&quot;S&quot; A &amp; B (TV Episode)\" />",
     "title:A &amp; B|"},
    {"<meta itemprop=\"datePublished\" content=\"2009-03-01\" />", "aired:2009-03-01|"},
    {"<div class=\"poster\"><img src=\"t\"></div>", "thumbnail:t|"},
    {"<h4 class=\"inline\">Directors:</h4>" + name("D") + name("E") + "</div>", "director:D;E|"},
    // Both ends are searched from the same place: the first " (" stands in the show's name.
    {"<meta property='og:title' content=\"&quot;S (UK)&quot; A (TV)\">end", "title:A (TV)\">end*|"},
    {"<meta itemprop=\"datePublished\" /> content=\"2009\" />", "aired:2009\" />*|"},
    // An address has at least one byte.
    {"<div class=\"poster\"><img src=\"\" alt=\"x\">", "thumbnail:\" alt=|"},
    // Six bytes belong to the heading, whatever they are.
    {"<h4 class=\"inline\">Director</div>" + name("D") + "</div>", "director:D|"},
    {"<h4 class=\"inline\">Director</div>", ""},
  };
  // clang-format on
  for (const auto& [page, text] : cases) {
    const Answer answer = read("velGetTVEpisode", page);
    EXPECT_EQ(answer.result, text.empty() ? -1 : 0) << page;
    EXPECT_EQ(answer.text, text + (text.empty() ? "" : "season:0|episode:-1|")) << page;
  }
  for (const auto& [page, text] : details) {
    const string lastOnes = page + top + list;
    string wanted = text;
    if (const std::size_t rest = wanted.find('*'); rest != string::npos) {
      wanted.replace(rest, 1, top + list);
    }
    const string got = read("velGetTVEpisode", lastOnes).text;
    EXPECT_NE(("|" + got).find("|" + wanted), string::npos) << page << ": " << got;
  }
}

TEST_F(Page, WithoutAnEndIsNoPage) {
  std::remove("/sbin/curl");
  test::writeScript(
      "/sbin/curl",
      "case $* in\n"
      "*/find*) printf '%s' '" +
          found(row("/title/tt1/?")) +
          "' >/var/tmp/movie_search.xxx ;;\n"
          "*) exec yes \"<link rel='image_src' href=\\\"$(printf %01000d 0)\\\">\" ;;\n"
          "esac\n");
  const long before = test::mostMemoryKiB();
  EXPECT_EQ(ask("imdbBasicGetMovies", {"x", 1}).text, "id:tt1|url:|outline:|");
  EXPECT_LT(test::mostMemoryKiB() - before, 192 * 1024);
}

TEST_F(Page, IsNotWrittenThroughWhatStandsInItsPlace) {
  const char* const file = "/var/tmp/movie_get_info.xxx";
  std::remove(file);
  const auto fetched = [] { return ask("imdbGetMovieInfo", {"tt1"}).result; };
  const auto withoutRemoval = [&fetched] {  // as of what a stranger plants in a sticky folder
    chmod("/var/tmp", 0555);
    const int result = fetched();
    chmod("/var/tmp", 0777);
    return result;
  };
  test::writeFile("/etc/config/page", "page");
  test::writeFile("/etc/config/kept", "kept");
  ASSERT_EQ(symlink("/etc/config/kept", file), 0);
  EXPECT_EQ(withoutRemoval(), 23);
  EXPECT_EQ(fetched(), 0);
  EXPECT_EQ(test::readFile(file), "page");
  std::remove(file);
  ASSERT_EQ(mkfifo(file, 0666), 0);
  EXPECT_EQ(withoutRemoval(), 23);
  EXPECT_EQ(fetched(), 0);
  EXPECT_EQ(test::readFile("/etc/config/kept"), "kept");
}

TEST_F(Page, OfArtworkMayBeBrokenDeepOrLarge) {
  test::writeFile(
      "/etc/config/page.xml",
      "<metadata><artist-list><artist id='a'/></artist-list><release-group-list>"
      "<release-group><title>T</title></release-group></release-group-list></metadata>");
  const string broken[] = {"",
                           "<html>Down</html>",
                           "{\"a\": ",
                           "{\"a\": }",
                           string("\0\xFF", 2),
                           "{\"a\": \"\\ud800\"}",
                           string(100000, '['),
                           "{\"a\":" + string(50 << 20, '[')};
  for (const string& document : broken) {
    test::writeFile("/etc/config/page.json", document);
    EXPECT_EQ(test::standardErrorOf([] {
                EXPECT_EQ(ask("velGetArtistThumbnail", {"x"}).result, 0);
              }).substr(0, 30),
              "Failed to parse configuration\n")
        << document.substr(0, 20);
  }
  test::writeFile("/etc/config/page.json",
                  "// c\n{\"s\": \"" + string(50 << 20, 'x') +
                      "\", \"artistbackground\": [{\"url\": \"u\"}]} rest");
  EXPECT_EQ(ask("velGetArtistThumbnail", {"x"}).text, "url:u|");
  std::remove("/etc/config/asked");
  EXPECT_EQ(ask("velSearchAlbum", {"x"}).text, "name:T|date:|image:|");  // nothing to ask for
  EXPECT_EQ(test::readFile("/etc/config/asked").find("fanart"), string::npos);
}

// The first match of a regular expression of the "C" locale, whatever the host's locale is.
TEST_F(Page, OfAShowHasRolesCutByARegularExpression) {
  const string set = "a-zA-Z'?áâäãåèéêëìíîïòóôöõøùúûüÿýñçšžŸŽð\x82";
  regex_t pattern;
  ASSERT_EQ(regcomp(&pattern, ("[" + set + "].[" + set + " ]+").c_str(), REG_EXTENDED), 0);
  std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
  int matched = 0;
  std::vector<string> roles = {"Jane Doe ", "1 2 3", "a\nb", "a-\x82\xBF\xB0"};
  string rows = cast("A", "<div>Jane Doe / Narrator</div>") + cast("A", "<div>1 2 3</div>") +
                cast("A", "<div>a\nb/</div>") + cast("A", "<div>a-\x82\xBF\xB0\xB7\xB0</div>");
  while (roles.size() < 20000) {
    string role(1 + random() % 12, '\0');
    for (char& c : role) {
      // Half the bytes match; any but a zero or what markup is made of occurs.
      c = static_cast<char>(random() % 255 + 1);
      c = random() % 2 == 0 || c == '<' || c == '&' ? "aZ' \xC3"[random() % 5] : c;
    }
    rows += cast("A", "<div>" + role + "</div>");
    regmatch_t match;
    const bool hit = regexec(&pattern, removeEmptyChar(role).c_str(), 1, &match, 0) == 0;
    matched += hit ? 1 : 0;
    roles.push_back(hit ? role.substr(0, static_cast<std::size_t>(match.rm_eo)) : role);
  }
  regfree(&pattern);
  EXPECT_GT(matched, 5000);
  EXPECT_LT(matched, 15000);
  test::writeFile("/etc/config/page", cast(rows));
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  velTVShowInfo show = {};
  EXPECT_EQ(velGetTVShowByID("tt1", "en", &show), 0);
  std::setlocale(LC_ALL, "C");
  for (string& role : roles) {
    removeEmptyChar(role);
  }
  EXPECT_EQ(show.actor_roles, roles);
  velFreeTVShowInfo(&show);
}

}  // namespace
