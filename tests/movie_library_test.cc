#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "libquilp.h"
#include "support.h"

namespace {

using std::string;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

string text(const char* field) { return field != nullptr ? field : "(null)"; }

class Movies : public testing::Test {
 protected:
  void SetUp() override {
    test::registerAddOn("Movie", kShell);
    test::newSiteRequests();
  }

  void TearDown() override {
    velFreeMovies(movies_, count_);
    velFreeMovieInfo(&info_);
    test::removeRegistry();
    EXPECT_EQ(test::Holdings::after(before_), before_);
  }

  /// The add-on writes down its arguments and answers with the document.
  static void shellWrites(const string& document, const string& more = "") {
    test::writeFile("/etc/config/document", document);
    test::writeScript(kShell, "printf '[%s]' \"$@\" >/etc/config/arguments\n" + more +
                                  "for file; do :; done\ncat /etc/config/document >\"$file\"\n");
  }
  static void shellRuns(const string& body) { test::writeScript(kShell, body); }

  int search(const string& keyword, int count) {
    velFreeMovies(movies_, count_);
    movies_ = nullptr;
    error_ = -7;
    return count_ = velSearchMovie(keyword.c_str(), count, &movies_, &error_);
  }
  string row(int i) const {
    const velMovie_& m = movies_[i];
    return text(m.id) + "|" + text(m.title) + "|" + text(m.year) + "|" + text(m.url) + "|" +
           text(m.outline);
  }
  int show(const string& id) {
    velFreeMovieInfo(&info_);
    info_ = velMovieInfo_();
    return velGetMovieByID(id.c_str(), &info_);
  }

  static constexpr char kShell[] = "/etc/config/shell";
  velMovie_* movies_ = nullptr;
  int count_ = 0;
  int error_ = 0;
  velMovieInfo_ info_ = velMovieInfo_();

 private:
  test::Holdings before_ = test::Holdings::now();
};
using AddOn = Movies;

class BuiltIn : public Movies {
  void SetUp() override { test::newSiteRequests(); }
};

const char kList[] =
    "<?xml version=\"1.0\"?>\n<movielist><movie><id><![CDATA[1]]></id>"
    "<title><![CDATA[A & <B>]]>x<![CDATA[C]]></title><year>2010</year><url><![CDATA[]]></url>"
    "<outline><![CDATA[O]]></outline></movie><other/><movie/></movielist>";

TEST_F(AddOn, IsAskedForTheCleanedKeyword) {
  shellWrites(kList);
  ASSERT_EQ(search("The.Film's.2010.720p", -3), 2);
  EXPECT_EQ(row(0), "1|A & <B>|(null)||O");
  EXPECT_EQ(row(1), "(null)|(null)|(null)|(null)|(null)");
  EXPECT_EQ(error_, -7);
  EXPECT_THAT(test::readFile("/etc/config/arguments"),
              StartsWith("[searchmovie][-t][The Film's][-n][-3][-o][/tmp/libquilp."));
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(AddOn, PrintsAListDocument) {
  shellWrites(kList);
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintSearchMovie("x", 1), 0); }),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<movielist>\n"
            "\t<movie rank=\"1\">\n"
            "\t\t<url></url>\n\t\t<id>1</id>\n\t\t<title>A &amp; &lt;B&gt;</title>\n\t\t<year/>\n"
            "\t\t<outline>O</outline>\n"
            "\t</movie>\n"
            "\t<movie rank=\"2\">\n"
            "\t\t<url/>\n\t\t<id/>\n\t\t<title/>\n\t\t<year/>\n"
            "\t</movie>\n"
            "</movielist>\n\n");
}

TEST_F(AddOn, AFailedSearchGivesItsStatus) {
  shellWrites(kList, "cat /etc/config/document >/tmp/other\nrm /tmp/other\n");
  const std::vector<std::pair<string, int>> cases = {{"exit 2", 2}, {"kill -9 $$", 1}};
  for (const auto& [body, status] : cases) {
    shellRuns("for file; do :; done\necho x >\"$file\"\n" + body + "\n");
    EXPECT_EQ(search("x", 1), 0);
    EXPECT_EQ(error_, status);
    EXPECT_EQ(movies_, nullptr);
    EXPECT_EQ(test::standardOutputOf([s = status] { EXPECT_EQ(velPrintSearchMovie("x", 1), s); }),
              "");
    EXPECT_EQ(show("abcdeX"), status);
    EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintMovieByID("abcdeX"), 1); }), "");
  }
}

TEST_F(AddOn, WithoutADocumentThereIsNothing) {
  string nested;
  for (int i = 0; i < 10 * 1024 * 1024 / 3; ++i) {
    nested += "<b>";
  }
  const string half = string(kList).substr(0, sizeof kList / 2);
  for (const string& document :
       {string(), half, string("<tvshowlist/>"), string("\0\xFF\xFE", 3), "<movielist>" + nested}) {
    shellWrites(document);
    EXPECT_EQ(search("x", 1), 0) << document.substr(0, 40);
    EXPECT_EQ(error_, -7);
    EXPECT_EQ(show("abcdeX"), 1);
    EXPECT_EQ(info_.title, nullptr);
    EXPECT_EQ(test::standardOutputOf([] {
                EXPECT_EQ(velPrintSearchMovie("x", 1), 0);
                EXPECT_EQ(velPrintMovieByID("abcdeX"), 1);
              }),
              "");
  }
  for (const char* gone : {"/etc/config/none", "/etc/config/document", "none"}) {
    test::registerAddOn("Movie", gone);
    EXPECT_EQ(search("x", 1), 0) << gone;
    EXPECT_EQ(show("abcdeX"), 1) << gone;
  }
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(AddOn, AnEmptyListIsStored) {
  shellWrites("<movielist></movielist>");
  EXPECT_EQ(search("x", 1), 0);
  EXPECT_NE(movies_, nullptr);
  EXPECT_EQ(error_, -7);
}

TEST_F(AddOn, AChildThatKeepsTheOutputOpenIsNotWaitedFor) {
  shellWrites(kList, "sleep 60 >&1 2>&1 &\necho $! >/etc/config/pid\n");
  EXPECT_EQ(search("x", 1), 2);
  const string pid = test::readFile("/etc/config/pid");
  EXPECT_EQ(std::system(("kill " + pid).c_str()), 0);
}

const char kMovie[] =
    "<movie><poster><![CDATA[P]]></poster><title><![CDATA[T]]></title><year><![CDATA[2010]]></year>"
    "<director><![CDATA[D1]]></director><director>plain</director><director><![CDATA[]]></director>"
    "<DIRECTOR><![CDATA[D2]]></DIRECTOR><country><![CDATA[NO]]></country>"
    "<actor><name><![CDATA[A]]></name><role><![CDATA[]]></role></actor>"
    "<actor><role><![CDATA[lost]]></role></actor>"
    "<actor><name><![CDATA[B]]></name><role><![CDATA[R]]></role></actor></movie>";

TEST_F(AddOn, FillsDetails) {
  shellWrites(kMovie);
  info_.director = {"kept"};
  ASSERT_EQ(velGetMovieByID("abcde'X", &info_), 0);
  EXPECT_THAT(test::readFile("/etc/config/arguments"),
              StartsWith("[getmovieinfobyid][-i]['X][-o][/tmp/libquilp."));
  EXPECT_STREQ(info_.title, "T");
  EXPECT_STREQ(info_.poster, "P");
  EXPECT_EQ(info_.plot, nullptr);
  EXPECT_THAT(info_.director, ElementsAre("kept", "D1", "", "D2"));
  EXPECT_THAT(info_.country, ElementsAre("NO"));
  EXPECT_THAT(info_.actor, ElementsAre("A", "B"));
  EXPECT_THAT(info_.role, ElementsAre("", "R"));
  EXPECT_EQ(show("abc"), 0);
  EXPECT_THAT(test::readFile("/etc/config/arguments"), StartsWith("[getmovieinfobyid][-i][][-o]"));
}

TEST_F(AddOn, PrintsDetailsWithoutCountries) {
  shellWrites(kMovie);
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintMovieByID("abcdeX"), 0); }),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<movie>\n"
            "\t<title>T</title>\n\t<year>2010</year>\n\t<rating/>\n\t<id/>\n"
            "\t<director>D1</director>\n\t<director></director>\n\t<director>D2</director>\n"
            "\t<company/>\n\t<mpaa/>\n"
            "\t<actor>\n\t\t<name>A</name>\n\t\t<role></role>\n\t</actor>\n"
            "\t<actor>\n\t\t<name>B</name>\n\t\t<role>R</role>\n\t</actor>\n"
            "\t<outline/>\n\t<plot/>\n\t<poster>P</poster>\n</movie>\n\n");
}

TEST_F(AddOn, ANamedActorWithoutARoleIsAnErrorThatLeavesTheCall) {
  shellWrites(
      "<movie><title><![CDATA[T]]></title><plot><![CDATA[P]]></plot>"
      "<actor><name><![CDATA[A]]></name><role>plain</role></actor></movie>");
  try {
    show("abcdeX");
    ADD_FAILURE();
  } catch (const std::logic_error& error) {
    EXPECT_STREQ(error.what(), "basic_string::_S_construct NULL not valid");
  }
  EXPECT_STREQ(info_.title, "T");
  EXPECT_THAT(info_.actor, ElementsAre("A"));
  EXPECT_EQ(info_.plot, nullptr);
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_THROW(velPrintMovieByID("x"), std::logic_error); }),
            "");
}

TEST_F(BuiltIn, SearchesAndEnriches) {
  ASSERT_EQ(search("The.Paper.Lighthouse.2011.1080p", 5), 2);
  EXPECT_EQ(row(0),
            "tt9000001|The Paper Lighthouse|2011|https://images.example/paper-lighthouse-small.jpg|"
            "A keeper folds a lighthouse out of sea charts & finds that ships obey it. When the "
            "charts run out, he has one night and a stack of love letters left.");
  EXPECT_THAT(row(1), StartsWith("tt9000008|The Paper Lighthouse Keeper|"));
  EXPECT_EQ(error_, -7);
  const auto requests = test::newSiteRequests();
  EXPECT_EQ(requests.at(0),
            "www.imdb.com GET /find?ref_=nv_sr_fn&q=The%20Paper%20Lighthouse&s=tt 200");
  EXPECT_THAT(requests,
              testing::Contains("www.imdb.com GET /title/tt9000001/?ref_=fn_tt_tt_1 200"));
  EXPECT_THAT(requests, testing::Contains("www.imdb.com GET /title/tt9000001/plotsummary 200"));
  EXPECT_NE(access("/var/tmp/movie_search.xxx", F_OK), -1);
}

TEST_F(BuiltIn, TakesTheFirstYearAndNoPosterIsAnEmptyString) {
  ASSERT_EQ(search("grey ferry", 1), 1);
  EXPECT_THAT(row(0), StartsWith("tt9000003|The Grey Ferry|2010||It crosses twice a day."));
  ASSERT_EQ(search("Salt", 1), 1);  // entities stay in the title, go in the outline
  EXPECT_THAT(row(0), StartsWith("tt9000002|Salt &amp; Ember|2012|"));
  EXPECT_THAT(row(0), HasSubstr("one stove \xE2\x80\x93 and"));
}

TEST_F(BuiltIn, FetchesAsManyTitlesAsAreWanted) {
  ASSERT_EQ(search("everything", 3), 3);
  const auto requests = test::newSiteRequests();
  EXPECT_EQ(
      std::count_if(requests.begin(), requests.end(),
                    [](const string& line) { return line.find("fn_tt_tt_1") != string::npos; }),
      3);
  ASSERT_EQ(search("everything", 20), 20);  // more than work records stand in the frame
  for (int i = 0; i < 20; ++i) {
    EXPECT_THAT(movies_[i].outline, StartsWith("Drawer " + std::to_string(i + 1)));
  }
  EXPECT_EQ(search("everything", -5), 1);
}

TEST_F(BuiltIn, NoResultsAreOneEmptyRecordHereAndNoneThere) {
  ASSERT_EQ(search("nosuchfilm", 4), 1);
  EXPECT_EQ(row(0), "(null)|(null)|(null)|(null)|(null)");
  EXPECT_THAT(test::newSiteRequests(), SizeIs(1));
  velFreeMovies(movies_, count_);
  count_ = 0;
  EXPECT_EQ(imdbGetMovies("nosuchfilm", 4, &movies_), 0);
  EXPECT_NE(movies_, nullptr);
}

TEST_F(BuiltIn, AnotherSearchCarriesEverythingItself) {
  count_ = imdbGetMovies("lighthouse", 1, &movies_);
  ASSERT_EQ(count_, 1);
  EXPECT_THAT(row(0), StartsWith("tt9000001|The Paper Lighthouse|2011|https://"));
  EXPECT_THAT(test::newSiteRequests(),
              ElementsAre("akas.imdb.com GET /search/title?at=0&sort=moviemeter,asc&start=1&title="
                          "lighthouse&title_type=feature,video,short 200"));
}

TEST_F(BuiltIn, ShowsDetails) {
  ASSERT_EQ(show("tt9000001"), 0);
  EXPECT_EQ(text(info_.title) + "|" + text(info_.year) + "|" + text(info_.rating) + "|" +
                text(info_.id) + "|" + text(info_.mpaa) + "|" + text(info_.company),
            "The Paper Lighthouse|2011|7.5|tt9000001|PG-13|Harbour Kite Pictures");
  EXPECT_STREQ(info_.poster, "https://images.example/paper-lighthouse.jpg");
  EXPECT_THAT(info_.plot, StartsWith("A keeper folds a lighthouse out of sea charts & finds"));
  EXPECT_THAT(info_.plot, HasSubstr("love letters"));
  EXPECT_STREQ(info_.plot, info_.outline);
  EXPECT_THAT(info_.country, ElementsAre("Norway", "UK"));
  EXPECT_THAT(info_.genre, ElementsAre("Drama", "Mystery"));
  EXPECT_THAT(info_.director, ElementsAre("Odile Brandvik"));
  EXPECT_THAT(info_.actor, ElementsAre("Ansel Quist", "Mira Holt", "J\xC3\xB8rn Vale"));
  EXPECT_THAT(info_.role, ElementsAre("The Keeper", "Captain Lise", "Postman"));
  EXPECT_THAT(test::newSiteRequests(),
              ElementsAre("akas.imdb.com GET /title/tt9000001/combined 200",
                          "www.imdb.com GET /title/tt9000001/plotsummary 200",
                          "akas.imdb.com GET /media/tt9000001/ 200"));
  ASSERT_EQ(show("tt9000004"), 0);
  EXPECT_EQ(text(info_.title) + "|" + text(info_.year), "Night Bus to Marrow|2013");
  EXPECT_EQ(info_.poster, nullptr);
}

TEST_F(BuiltIn, APlotWithoutALinkLeavesTheCall) {
  EXPECT_THROW(show("tt9000009"), std::out_of_range);
  EXPECT_STREQ(info_.title, "Winter Without Links");
  EXPECT_EQ(info_.plot, nullptr);
  EXPECT_EQ(test::standardOutputOf(
                [] { EXPECT_THROW(velPrintMovieByID("tt9000009"), std::out_of_range); }),
            "");
}

TEST_F(BuiltIn, FaultyPagesGiveWhatTheyHold) {
  for (const char* fault : {"fault500", "faultempty", "faultcut", "faultbinary", "faultbig"}) {
    const string id = string(fault) + "-tt9000001";
    EXPECT_EQ(show(id), 0) << id;
    search(string(fault) + " everything", 2);
    for (int i = 0; i < count_; ++i) {
      EXPECT_NE(row(i), "") << fault;
    }
  }
  EXPECT_EQ(show("faultclosed-tt9000001"), 18);  // the client's status for a partial file
  EXPECT_EQ(info_.id, nullptr);
  EXPECT_EQ(search("faultclosed everything", 2), 0);
  EXPECT_EQ(movies_, nullptr);
  ASSERT_EQ(search("Broken Lantern", 20), 8);  // each result's own page has a fault
}

TEST_F(BuiltIn, AQuoteNeverReachesTheShell) {
  const string quoted = "'; touch /etc/config/ran; echo '";
  EXPECT_EQ(show(quoted), 2);
  EXPECT_EQ(imdbBasicGetMovies(quoted.c_str(), 1, &movies_), 0);
  EXPECT_EQ(imdbGetMovies(quoted.c_str(), 1, &movies_), 0);
  EXPECT_EQ(movies_, nullptr);
  EXPECT_NE(access("/etc/config/ran", F_OK), 0);
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(BuiltIn, AClientThatFailsIsAFailedFetch) {
  // Nothing listens where the client is sent now.
  const string setup = test::readFile("/run/box/.curlrc");
  test::writeFile("/run/box/.curlrc", "connect-to = \"::127.0.0.1:1\"\n");
  EXPECT_EQ(search("x", 1), 0);
  EXPECT_EQ(show("tt9000001"), 7);
  EXPECT_EQ(test::standardOutputOf([] {
              EXPECT_EQ(velPrintSearchMovie("x", 1), 0);
              EXPECT_EQ(velPrintMovieByID("tt9000001"), 1);
            }),
            "");
  test::writeFile("/run/box/.curlrc", setup);
}

TEST_F(BuiltIn, RequestsOfOneKindWaitForEachOther) {
  std::vector<std::thread> hosts;
  for (int i = 1; i <= 6; ++i) {
    hosts.emplace_back([i] {
      velMovieInfo_ info = velMovieInfo_();
      EXPECT_EQ(velGetMovieByID(("tt900000" + std::to_string(i)).c_str(), &info), 0);
      EXPECT_EQ(text(info.id), "tt900000" + std::to_string(i));
      EXPECT_FALSE(info.genre.empty());
      velFreeMovieInfo(&info);
    });
  }
  for (std::thread& host : hosts) {
    host.join();
  }
}

TEST(Free, TakesNullAndCountsBelowOne) {
  velFreeMovies(nullptr, 5);
  velFreeMovieInfo(nullptr);
  velFreeMovies(static_cast<velMovie_*>(std::calloc(3, sizeof(velMovie_))), 0);
  velFreeMovies(static_cast<velMovie_*>(std::calloc(3, sizeof(velMovie_))), -1);
}

}  // namespace
