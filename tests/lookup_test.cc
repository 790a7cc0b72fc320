#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/time.h>

#include <csignal>
#include <cstdio>
#include <fstream>
#include <string>

#include "lookup/requests.h"
#include "support.h"

namespace libquilp {
namespace {

using std::string;

constexpr char kAddOn[] = "/etc/config/addon";

string why(const Request& request, const Values& values) {
  Observer quiet;
  string told;
  EXPECT_EQ(
      test::standardErrorOf([&] { told = sentence(request.print(request, values, {&quiet})); }),
      "");
  return told;
}

class Lookups : public testing::Test {
 protected:
  void TearDown() override {
    test::removeRegistry();
    EXPECT_EQ(test::Holdings::after(before_), before_);
  }

 private:
  test::Holdings before_ = test::Holdings::now();
};

TEST_F(Lookups, AFailedAddOnIsExplained) {
  test::registerAddOn("Movie", kAddOn);
  const struct {
    const char* body;
    const char* sentence;
  } rows[] = {
      {"exit 3", "ended with status 3"},
      {"kill -KILL $$", "was ended by signal 9 (Killed)"},
      {"", "wrote no document"},
      {": >\"$file\"", "wrote an empty document"},
  };
  for (const auto& row : rows) {
    test::writeScript(kAddOn, string("for file; do :; done\n") + row.body + "\n");
    EXPECT_THAT(why(kMovieSearch, Values::search("x", 1)), testing::EndsWith(row.sentence));
    EXPECT_THAT(why(kMovieDetails, Values::title("quilp1")), testing::EndsWith(row.sentence));
  }
  test::writeScript(kAddOn,
                    "for file; do :; done\necho '<movie><actor><name><![CDATA[A]]></name>"
                    "</actor></movie>' >\"$file\"\n");
  EXPECT_THAT(why(kMovieDetails, Values::title("quilp1")), testing::EndsWith("without a role"));
  std::remove(kAddOn);
  EXPECT_THAT(why(kMovieSearch, Values::search("x", 1)),
              testing::MatchesRegex("the add-on of \\[.*\\] cannot be started: No such file.*"));
}

TEST_F(Lookups, AFailedFetchIsExplained) {
  EXPECT_EQ(why(kMovieSearch, Values::search("nosuchtitle", 1)), "nothing found");
  EXPECT_EQ(why(kShowSearch, Values::search("fault500-Row", 1)), "the site answered HTTP 500");
  EXPECT_EQ(why(kEpisodeDetails, Values::ofEpisode("tt8000001", 99, 1, nullptr)),
            "the show has no season 99");
  EXPECT_EQ(why(kEpisodeDetails, Values::ofEpisode("tt8000001", 2, 99, nullptr)),
            "the season has no episode 99");
  EXPECT_EQ(why(kMovieDetails, Values::title("it's")), "no page has a single quote in its address");
  EXPECT_EQ(why(kMovieSearch, Values::search("Lighthouse", 2)), "");
}

TEST_F(Lookups, WhatCurlAndTheHeadersTellIsExplained) {
  const Values values = Values::search("x", 1);
  const string answers =
      "while [ $# -gt 1 ]; do case $1 in -o) page=$2;; -D) headers=$2;; esac; shift; done\n";
  {
    const test::Curl curl("exit 6\n");
    EXPECT_EQ(why(kMovieSearch, values), "could not resolve host www.imdb.com");
  }
  {
    const test::Curl curl("exit 28\n");
    EXPECT_EQ(why(kMovieSearch, values), "www.imdb.com did not answer in time");
  }
  {
    const test::Curl curl(answers +
                          "echo >\"$page\"\nprintf 'HTTP/1.1 302 Found\\r\\n\\r\\nHTTP/2 202 "
                          "\\r\\nX-Amzn-Waf-Action: challenge\\r\\n\\r\\n' >\"$headers\"\n");
    EXPECT_EQ(why(kMovieSearch, values),
              "the site answers only browsers (HTTP 202 with a challenge): use an add-on, see "
              "quilp-addon(7)");
  }
  const test::Curl curl(answers +
                        "echo '<title>Forbidden</title>' >\"$page\"\n"
                        "echo HTTP/1.1 403 No >\"$headers\"\n");
  EXPECT_EQ(why(kMovieSearch, values), "the site answered HTTP 403");
  EXPECT_EQ(why(kMovieDetails, Values::title("tt1")), "the site answered HTTP 403");
}

TEST_F(Lookups, OnlyAnObservedOneAsksCurlForTheHeaders) {
  const test::Curl curl(
      "echo \"$@\" | sed 's/libquilp[.][^ ]*/FILE/g' >>/etc/config/commands\n"
      "exec /sbin/real \"$@\"\n");
  Observer quiet;
  const auto commandsOf = [](const Context& context) {
    std::remove("/etc/config/commands");
    run(kShowSearch, Values::search("Signal Row", 1), context);
    return test::readFile("/etc/config/commands");
  };
  const string plain = commandsOf({});
  string observed = commandsOf({&quiet});
  EXPECT_EQ(plain.find("-D"), string::npos);
  EXPECT_GT(std::count(plain.begin(), plain.end(), '\n'), 1);
  for (const string option = " -D /tmp/FILE"; observed.find(option) != string::npos;) {
    observed.erase(observed.find(option), option.size());
  }
  EXPECT_EQ(observed, plain);
}

TEST_F(Lookups, AfterAnInterruptedWaitTheRealStatusDecidesAboutTheDocument) {
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  test::registerAddOn("Movie", kAddOn);
  for (const string status : {"0", "3"}) {
    test::writeScript(kAddOn,
                      "for file; do :; done\nsleep 0.3\nkill -ALRM $PPID\nsleep 0.3\n"
                      "echo '<movielist><movie/></movielist>' >\"$file\"\nexit " +
                          status + "\n");
    velMovie_* movies = nullptr;
    int error = -7;
    const int n = velSearchMovie("x", 1, &movies, &error);
    EXPECT_EQ(n, status == "0" ? 1 : 0);
    EXPECT_EQ(error, -7);
    velFreeMovies(movies, n);
  }
}

TEST_F(Lookups, NullPointersAreRefusedBeforeAnythingIsLookedUp) {
  test::registerAddOn("Movie", test::writeScript(kAddOn, "echo ran >/etc/config/ran\nexit 3\n"));
  std::remove("/etc/config/ran");
  int error = -7;
  EXPECT_EQ(velSearchMovie("x", 1, nullptr, &error), 0);
  EXPECT_EQ(velGetMovieByID("quilp1", nullptr), 1);
  EXPECT_EQ(imdbBasicGetMovies("x", 1, nullptr), 0);
  EXPECT_EQ(imdbGetMovies("x", 1, nullptr), 0);
  EXPECT_EQ(imdbGetMovieInfo("tt1", nullptr), 1);
  EXPECT_EQ(velSearchTVShows("x", 1, nullptr, nullptr, &error), 0);
  EXPECT_EQ(velGetTVShowByID("tt1", nullptr, nullptr), 1);
  EXPECT_EQ(velGetTVEpisode("tt1", 1, 1, nullptr, nullptr), 1);
  velTVShowInfo show = velTVShowInfo();
  char untouched = 0;
  show.title = &untouched;
  EXPECT_EQ(velGetTVShowByID(nullptr, nullptr, &show), 1);
  EXPECT_EQ(show.title, &untouched);
  EXPECT_EQ(velPrintTVEpisode(nullptr, 1, 1, nullptr), 1);
  EXPECT_EQ(velSearchAlbum("x", "y", 1, nullptr), 0);
  EXPECT_EQ(velGetAlbumByArtist("x", 1, nullptr), 0);
  EXPECT_EQ(velGetArtistThumbnail("x", 1, nullptr), 0);
  EXPECT_EQ(velGetKTVInfo("a_b", nullptr), 1);
  EXPECT_NE(std::ifstream("/etc/config/ran").good(), true);
  EXPECT_EQ(error, -7);

  velMovie_* movies = nullptr;
  EXPECT_EQ(velSearchMovie(nullptr, 1, &movies, nullptr), 0);  // the status goes nowhere
  EXPECT_EQ(movies, nullptr);
  EXPECT_EQ(url_encode(nullptr), nullptr);
  EXPECT_EQ(url_decode(nullptr), nullptr);
  EXPECT_EQ(decode_html_entities_utf8(nullptr, "x"), 0U);
  EXPECT_EQ(StringConvert2PercentString(nullptr, 1, nullptr, 9), -1);
  replace_string(nullptr);
  getDefaultLang(nullptr, nullptr);
}

}  // namespace
}  // namespace libquilp
