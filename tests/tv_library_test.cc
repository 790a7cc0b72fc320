#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
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
using testing::SizeIs;
using testing::StartsWith;

char kGarbage = 0;

string text(const char* field) { return field != nullptr ? field : "(null)"; }

class TV : public testing::Test {
 protected:
  void SetUp() override {
    test::registerAddOn("TV", kShell);
    test::newSiteRequests();
  }

  void TearDown() override {
    velFreeTVShows(shows_, count_);
    velFreeTVShowInfo(&show_);
    velFreeTVEpisode(&episode_);
    test::removeRegistry();
    EXPECT_EQ(test::Holdings::after(before_), before_);
  }

  /// The add-on writes down its arguments and answers with the document.
  static void shellWrites(const string& document) {
    test::writeFile("/etc/config/document", document);
    test::writeScript(kShell,
                      "printf '[%s]' \"$@\" >/etc/config/arguments\n"
                      "for file; do :; done\ncat /etc/config/document >\"$file\"\n");
  }
  static string arguments() {
    const string all = test::readFile("/etc/config/arguments");
    return all.substr(0, all.find("[/tmp/libquilp."));
  }

  int search(const string& keyword, int count, const char* lang = nullptr) {
    velFreeTVShows(shows_, count_);
    shows_ = nullptr;
    error_ = -7;
    return count_ = velSearchTVShows(keyword.c_str(), count, lang, &shows_, &error_);
  }
  string row(int i) const {
    const velTVShow& s = shows_[i];
    return text(s.id) + "|" + text(s.title) + "|" + text(s.first_air_date) + "|" + text(s.poster) +
           "|" + text(s.outline);
  }
  int show(const string& id, const char* lang = nullptr) {
    velFreeTVShowInfo(&show_);
    show_ = velTVShowInfo();
    return velGetTVShowByID(id.c_str(), lang, &show_);
  }
  int episode(const string& id, int season, int number, const char* lang = nullptr) {
    velFreeTVEpisode(&episode_);
    episode_ = velTVEpisode();
    return velGetTVEpisode(id.c_str(), season, number, lang, &episode_);
  }
  string dates() const {
    return text(show_.title) + "|" + text(show_.first_air_date) + "|" + text(show_.last_air_date) +
           "|" + text(show_.banner) + "|" + text(show_.rating) + "|" + text(show_.duration);
  }
  /// What all three print functions write when they must write nothing.
  static string printedOnFailure(int searchStatus, int status) {
    return test::standardOutputOf([=] {
      EXPECT_EQ(velPrintSearchTVShows("x", 1, "en"), searchStatus);
      EXPECT_EQ(velPrintTVShowByID("abcdeX", "en"), status);
      EXPECT_EQ(velPrintTVEpisode("abcdeX", 1, 1, "en"), status);
    });
  }

  static constexpr char kShell[] = "/etc/config/shell";
  velTVShow* shows_ = nullptr;
  int count_ = 0;
  int error_ = 0;
  velTVShowInfo show_ = velTVShowInfo();
  velTVEpisode episode_ = velTVEpisode();

 private:
  test::Holdings before_ = test::Holdings::now();
};
using TVAddOn = TV;

class TVBuiltIn : public TV {
  void SetUp() override { test::newSiteRequests(); }
};

TEST_F(TVAddOn, SearchesAndPrintsRealSections) {
  shellWrites(
      "<tvshowlist><tvshow><url><![CDATA[p]]></url><id><![CDATA[1]]></id>"
      "<title><![CDATA[Tom & <Jerry> &amp;]]></title><first_air_date>plain</first_air_date>"
      "<outline><![CDATA[]]></outline></tvshow><tvshow/>"
      "<tvshow><outline><![CDATA[O]]></outline></tvshow></tvshowlist>");
  test::writeFile("/etc/config/catalox.conf", "[shell]\nLANG=german\n");
  ASSERT_EQ(search("The.Show's.S01E02.720p", -3), 3);
  EXPECT_EQ(arguments(), "[searchtvshow][-t][The Show's][-n][-3][-l][ger][-o]");
  EXPECT_EQ(row(0), "1|Tom & <Jerry> &amp;|(null)|p|");
  EXPECT_EQ(row(1), "(null)|(null)|(null)|(null)|(null)");
  EXPECT_EQ(error_, -7);
  EXPECT_EQ(
      test::standardOutputOf([] { EXPECT_EQ(velPrintSearchTVShows("x", 1, "fr-CA"), 0); }),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tvshowlist>\n"
      "\t<tvshow rank=\"1\">\n\t\t<id><![CDATA[1]]></id>\n"
      "\t\t<title><![CDATA[Tom & <Jerry> &amp;]]></title>\n"
      "\t\t<first_air_date><![CDATA[]]></first_air_date>\n\t\t<poster><![CDATA[p]]></poster>\n"
      "\t\t<outline/>\n\t</tvshow>\n"
      "\t<tvshow rank=\"2\">\n\t\t<id><![CDATA[]]></id>\n\t\t<title><![CDATA[]]></title>\n"
      "\t\t<first_air_date><![CDATA[]]></first_air_date>\n\t\t<poster><![CDATA[]]></poster>\n"
      "\t\t<outline/>\n\t</tvshow>\n"
      "\t<tvshow rank=\"3\">\n\t\t<id><![CDATA[]]></id>\n\t\t<title><![CDATA[]]></title>\n"
      "\t\t<first_air_date><![CDATA[]]></first_air_date>\n\t\t<poster><![CDATA[]]></poster>\n"
      "\t\t<outline><![CDATA[O]]></outline>\n\t</tvshow>\n"
      "</tvshowlist>\n\n");
  EXPECT_EQ(arguments(), "[searchtvshow][-t][x][-n][1][-l][fr-CA][-o]");
  std::remove("/etc/config/catalox.conf");
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

const char kActors[] =
    "<actor><name><![CDATA[A]]></name></actor><actor><role><![CDATA[R]]></role></actor><actor/>";

TEST_F(TVAddOn, FillsAndPrintsAShow) {
  shellWrites(string("<tvshow><id><![CDATA[i]]></id><title><![CDATA[T]]></title>"
                     "<banner><![CDATA[]]></banner><duration>plain</duration>"
                     "<genres><![CDATA[G]]></genres><genres><![CDATA[]]></genres><genre>no</genre>"
                     "<network><![CDATA[N]]></network><network><![CDATA[M]]></network>"
                     "<creator/>") +
              kActors + "</tvshow>");
  show_.genres = {"kept"};
  ASSERT_EQ(velGetTVShowByID("abcde'X", nullptr, &show_), 0);
  EXPECT_EQ(arguments(), "[gettvshowinfo][-i]['X][-l][en][-o]");
  EXPECT_EQ(dates(), "T|(null)|(null)||(null)|(null)");
  EXPECT_THAT(show_.genres, ElementsAre("kept", "G"));
  EXPECT_THAT(show_.networks, ElementsAre("N", "M"));
  EXPECT_THAT(show_.actor_names, ElementsAre("A", "", ""));
  EXPECT_THAT(show_.actor_roles, ElementsAre("", "R", ""));
  EXPECT_EQ(
      test::standardOutputOf([] { EXPECT_EQ(velPrintTVShowByID("abc", "en"), 0); }),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tvshow>\n"
      "\t<id><![CDATA[i]]></id>\n\t<title><![CDATA[T]]></title>\n"
      "\t<first_air_date/>\n\t<last_air_date/>\n\t<poster/>\n\t<banner><![CDATA[]]></banner>\n"
      "\t<rating/>\n\t<outline/>\n\t<duration/>\n\t<content_rating/>\n"
      "\t<networks><![CDATA[N]]></networks>\n\t<networks><![CDATA[M]]></networks>\n\t<creator/>\n"
      "\t<genre><![CDATA[G]]></genre>\n"
      "\t<actor>\n\t\t<name><![CDATA[A]]></name>\n\t\t<role><![CDATA[]]></role>\n\t</actor>\n"
      "\t<actor>\n\t\t<name><![CDATA[]]></name>\n\t\t<role><![CDATA[R]]></role>\n\t</actor>\n"
      "\t<actor>\n\t\t<name><![CDATA[]]></name>\n\t\t<role><![CDATA[]]></role>\n\t</actor>\n"
      "</tvshow>\n\n");
  EXPECT_EQ(arguments(), "[gettvshowinfo][-i][][-l][en][-o]");
}

TEST_F(TVAddOn, FillsAndPrintsAnEpisode) {
  shellWrites(string("<tvepisode><thumbnail><![CDATA[t]]></thumbnail><url><![CDATA[u]]></url>"
                     "<director><![CDATA[D]]></director><rating><![CDATA[8]]></rating>") +
              "</tvepisode>");
  ASSERT_EQ(episode("abcdeX", 0, 12, "de"), 0);
  EXPECT_EQ(arguments(), "[gettvshowinfo][-i][X][-s][0][-e][12][-l][de][-o]");
  EXPECT_EQ(text(episode_.thumbnail) + text(episode_.season_number) + text(episode_.episode_number),
            "t(null)12");
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintTVEpisode("abcdeX", 0, -1, "de"), 0); }),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<tvepisode>\n\t<id/>\n\t<title/>\n"
            "\t<air_date/>\n\t<season_number><![CDATA[0]]></season_number>\n"
            "\t<episode_number><![CDATA[-1]]></episode_number>\n\t<outline/>\n"
            "\t<thumbnail><![CDATA[t]]></thumbnail>\n\t<genre/>\n\t<actor/>\n"
            "\t<director><![CDATA[D]]></director>\n\t<rating><![CDATA[8]]></rating>\n"
            "</tvepisode>\n\n");
  shellWrites("<tvepisode><thumbnail/><url><![CDATA[u]]></url></tvepisode>");
  ASSERT_EQ(episode("abcdeX", 3, 0), 0);
  EXPECT_EQ(text(episode_.thumbnail) + text(episode_.season_number) + text(episode_.episode_number),
            "u3(null)");
}

TEST_F(TVAddOn, AFailureGivesItsStatusAndNothingElse) {
  for (const auto& [body, status] : {std::pair("exit 2\n", 2), std::pair("kill -9 $$\n", 1)}) {
    test::writeScript(kShell, string("for file; do :; done\necho x >\"$file\"\n") + body);
    EXPECT_EQ(search("x", 1), 0);
    EXPECT_EQ(error_, status);
    EXPECT_EQ(shows_, nullptr);
    EXPECT_EQ(show("abcdeX"), status);
    EXPECT_EQ(episode("abcdeX", 1, 1), status);
    EXPECT_EQ(printedOnFailure(status, status), "");
  }
  for (const string& document :
       {string(), string("<tvshowlist>"), string("<movielist/>"), string("\0\xFF\xFE", 3)}) {
    shellWrites(document);
    EXPECT_EQ(search("x", 1), 0);
    EXPECT_EQ(error_, -7);
    show_.title = &kGarbage;  // never released: it is set to null first
    EXPECT_EQ(velGetTVShowByID("abcdeX", "en", &show_), 1);
    EXPECT_EQ(show_.title, nullptr);
    EXPECT_EQ(episode("abcdeX", 1, 1), 1);
    EXPECT_EQ(printedOnFailure(0, 1), "");
  }
  shellWrites("<tvshowlist/>");
  EXPECT_EQ(search("x", 1), 0);
  EXPECT_NE(shows_, nullptr);
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(TVBuiltIn, SearchesAndEnriches) {
  ASSERT_EQ(search("Signal.Row.S02E10.720p", 5), 1);
  EXPECT_EQ(
      row(0),
      "tt8000001|Signal Row|2008|https://images.example/signal-row.jpg|Five keepers share one "
      "railway line & no timetable. Somebody is moving the points at night.");
  EXPECT_THAT(test::newSiteRequests(),
              ElementsAre("www.imdb.com GET /find?q=Signal%20Row&s=tt&ttype=tv&ref_=fn_tv 200",
                          "www.imdb.com GET /title/tt8000001/?ref_=fn_tv_tt_1 200",
                          "www.imdb.com GET /title/tt8000001/plotsummary 200"));
  EXPECT_EQ(access("/var/tmp/tvshow_search.xxx", F_OK), 0);
  ASSERT_EQ(search("Shared", 1), 1);
  EXPECT_THAT(row(0), StartsWith("tt8000004|Shared by Nobody|||Two parts, one door."));

  ASSERT_EQ(search("Evening", 4), 4);
  EXPECT_THAT(row(3),
              StartsWith("tt8200004|Evening Class 04|1999|https://images.example/class-04"));
  EXPECT_THAT(test::newSiteRequests(), SizeIs(2 + 1 + 4));

  ASSERT_EQ(search("nosuchshow", 4), 1);
  EXPECT_EQ(row(0), "(null)|(null)|(null)|(null)|(null)");
  EXPECT_THAT(test::newSiteRequests(), SizeIs(1));
}

TEST_F(TVBuiltIn, ShowsDetailsInAnyLocale) {
  for (const char* locale : {"C", "C.UTF-8"}) {
    ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
    show_.genres = show_.actor_names = show_.actor_roles = {"old"};
    ASSERT_EQ(velGetTVShowByID("tt8000001", nullptr, &show_), 0);
    EXPECT_EQ(dates(),
              "Signal Row|2008-01-01|2013-12-31|"
              "https://images.example/signal-row-banner.jpg|8.5|49 min");
    EXPECT_STREQ(show_.id, "tt8000001");
    EXPECT_THAT(show_.outline, HasSubstr("at night."));
    EXPECT_THAT(show_.creators, ElementsAre("Agathe Worm", "Luis &Oacute;rd&oacute;&ntilde;ez"));
    EXPECT_THAT(show_.genres, ElementsAre("Drama", "Mystery"));
    EXPECT_THAT(show_.actor_names, ElementsAre("Hedda Lund", "Basil Okoro", "Pia Vang"));
    EXPECT_THAT(show_.actor_roles, ElementsAre("Jane Doe", "Éa", "O'Malley?"));
    show_.creators.clear();
    velFreeTVShowInfo(&show_);
    show_ = velTVShowInfo();
  }
  std::setlocale(LC_ALL, "C");
  EXPECT_THAT(test::newSiteRequests(),
              testing::Contains("www.imdb.com GET /media/tt8000001/strip?ref_=tt_pv_md_1 200"));
}

TEST_F(TVBuiltIn, AShowMayLackAlmostEverything) {
  ASSERT_EQ(show("tt8000002"), 0);
  EXPECT_EQ(dates(),
            "The Slow Comet|2011-01-01|(null)|https://images.example/comet-meta.jpg|7.4|"
            "22 min");
  EXPECT_THAT(show_.actor_names, SizeIs(3));
  EXPECT_THAT(show_.actor_roles, ElementsAre("Dr. Mabel Quick", "The Cook"));
  EXPECT_THAT(test::standardOutputOf([] { velPrintTVShowByID("tt8000002", "x"); }),
              HasSubstr("\n\t<actor/>\n</tvshow>\n"));
  ASSERT_EQ(show("tt8000003"), 0);
  EXPECT_EQ(dates(), "Harbour Without Pictures|2005-01-01|(null)|(null)|(null)|(null)");
  EXPECT_EQ(show_.outline, nullptr);
  ASSERT_EQ(show("tt8000004"), 0);
  EXPECT_EQ(dates(), "Shared by Nobody|2009-01-01|2010-12-31|(null)|(null)|(null)");
  ASSERT_EQ(show("tt1"), 0);
  EXPECT_EQ(dates(), "(null)|(null)|(null)|(null)|(null)|(null)");
  EXPECT_STREQ(show_.id, "tt1");
}

TEST_F(TVBuiltIn, FindsEpisodesOnTheirSeasonsList) {
  ASSERT_EQ(episode("tt8000001", 2, 1), 0);
  EXPECT_EQ(text(episode_.id) + "|" + text(episode_.title) + "|" + text(episode_.air_date) + "|" +
                text(episode_.season_number) + "|" + text(episode_.episode_number) + "|" +
                text(episode_.thumbnail) + "|" + text(episode_.outline) + "|" +
                text(episode_.rating),
            "tt8100001|The Points|2009-03-01|2|1|https://images.example/still-01.jpg|"
            "Night 01 on the line.|8.01");
  EXPECT_THAT(episode_.directors, ElementsAre("Director 01", "Ola Brekke"));
  EXPECT_THAT(episode_.genres, ElementsAre("Drama"));
  EXPECT_THAT(episode_.actor_roles, ElementsAre("Jane Doe", "Ticket clerk / Voice 01"));
  EXPECT_THAT(
      test::newSiteRequests(),
      ElementsAre("www.imdb.com GET /title/tt8000001/episodes?season=2&ref_=tt_eps_sn_1 200",
                  "www.imdb.com GET /title/tt8100001/?ref_=fn_tv_tt_1 200"));
  for (int number = 2; number <= 12; ++number) {
    ASSERT_EQ(episode("tt8000001", 2, number), 0);
    EXPECT_EQ(text(episode_.id), "tt" + std::to_string(8100000 + number));
  }
  test::newSiteRequests();
  EXPECT_EQ(episode("tt8000001", 2, 13), -1);
  EXPECT_EQ(episode("tt8000001", 1, 1), -1);
  EXPECT_EQ(episode_.season_number, nullptr);
  EXPECT_THAT(test::newSiteRequests(), SizeIs(2));  // the lists alone
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintTVEpisode("x", 1, 1, "en"), -1); }), "");
}

TEST_F(TVBuiltIn, ACastRowThatIsTooShortLeavesTheCall) {
  EXPECT_THROW(show("tt8000005"), std::out_of_range);
  EXPECT_EQ(dates(), "A Row Too Short|2001-01-01|2002-12-31|(null)|(null)|(null)");
  EXPECT_EQ(test::standardOutputOf(
                [] { EXPECT_THROW(velPrintTVShowByID("tt8000005", "en"), std::out_of_range); }),
            "");
}

TEST_F(TVBuiltIn, FaultyPagesGiveWhatTheyHold) {
  for (const char* fault : {"fault500", "faultempty", "faultcut", "faultbinary", "faultbig"}) {
    EXPECT_EQ(show(string(fault) + "-tt8000001"), 0) << fault;
    EXPECT_LE(episode(string(fault) + "-tt8000001", 2, 1), 0) << fault;
    search(string(fault) + " evening", 2);
  }
  EXPECT_EQ(show("faultclosed-tt8000001"), 1);
  EXPECT_EQ(show_.id, nullptr);
  EXPECT_EQ(episode("faultclosed-tt8000001", 2, 1), -1);
  EXPECT_EQ(episode("tt8000001", 3, 1), 1);
  EXPECT_EQ(text(episode_.id), "faultclosed-tt8100001");
  EXPECT_EQ(search("faultclosed evening", 2), 0);
  EXPECT_EQ(shows_, nullptr);
  ASSERT_EQ(search("Broken Aerial", 20), 8);  // each result's own page has a fault
  for (int i = 0; i < count_; ++i) {
    EXPECT_NE(shows_[i].outline, nullptr);
  }
}

TEST_F(TVBuiltIn, AQuoteNeverReachesTheShell) {
  const string quoted = "'; touch /etc/config/ran; echo '";
  EXPECT_EQ(show(quoted), 1);
  EXPECT_EQ(episode(quoted, 1, 1), -1);
  EXPECT_NE(access("/etc/config/ran", F_OK), 0);
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(TVBuiltIn, ShowsAndEpisodesWaitForEachOther) {
  std::vector<std::thread> hosts;
  for (int i = 1; i <= 6; ++i) {
    hosts.emplace_back([i] {
      velTVEpisode episode = velTVEpisode();
      velTVShowInfo show = velTVShowInfo();
      EXPECT_EQ(velGetTVShowByID("tt8000003", nullptr, &show), 0);
      EXPECT_EQ(velGetTVEpisode("tt8000001", 2, i, nullptr, &episode), 0);
      EXPECT_STREQ(show.title, "Harbour Without Pictures");
      EXPECT_EQ(text(episode.air_date), "2009-03-0" + std::to_string(i));
      velFreeTVEpisode(&episode);
      velFreeTVShowInfo(&show);
    });
  }
  for (std::thread& host : hosts) {
    host.join();
  }
}

TEST(TVNull, IsRefusedOrIgnored) {
  velTVShowInfo show = velTVShowInfo();
  velTVEpisode episode = velTVEpisode();
  show.title = episode.title = &kGarbage;
  EXPECT_EQ(velGetTVShowByID(nullptr, "en", &show), 1);
  EXPECT_EQ(velGetTVShowByID("x", "en", nullptr), 1);
  EXPECT_EQ(velGetTVEpisode(nullptr, 1, 1, "en", &episode), 1);
  EXPECT_EQ(velGetTVEpisode("x", 1, 1, "en", nullptr), 1);
  EXPECT_EQ(show.title, &kGarbage);
  EXPECT_EQ(episode.title, &kGarbage);
  EXPECT_EQ(velPrintTVShowByID(nullptr, nullptr), 1);
  EXPECT_EQ(velPrintTVEpisode(nullptr, 1, 1, nullptr), 1);
  velFreeTVShows(nullptr, 5);
  velFreeTVShowInfo(nullptr);
  velFreeTVEpisode(nullptr);
  velFreeTVShows(static_cast<velTVShow*>(std::calloc(3, sizeof(velTVShow))), -1);
}

}  // namespace
