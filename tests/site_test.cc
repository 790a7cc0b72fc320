// The built-in lookups, beside the sample site: what they find, and what they ask it for.

#include <fnmatch.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <thread>

#include "libquilp.h"
#include "lookups.h"
#include "support.h"

namespace {

using std::string;
using test::Answer;
using test::ask;
using test::Asked;
using test::Kind;
using test::Lookup;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using Strings = std::vector<string>;

class Site : public testing::Test {
 protected:
  void SetUp() override {
    test::writeFile("/etc/config/zorp.conf", "");
    test::newSiteRequests();
  }
  void TearDown() override {
    test::removeRegistry();
    EXPECT_NE(access("/tmp/ran", F_OK), 0);
    EXPECT_EQ(test::Holdings::after(before_), before_);
  }

 private:
  test::Holdings before_ = test::Holdings::now();
};

struct Case {
  const char* function;
  Asked asked;
  int result;
  string text;       // "*" stands for anything
  Strings requests;  // with the status, when that is not 200; none: not looked at
};

constexpr char kKey[] = "?api_key=0f1e2d3c4b5a69788796a5b4c3d2e1f0";
const string kMain = "www.imdb.com GET ";
const string kAkas = "akas.imdb.com GET ";
const string kMusic = "musicbrainz.org GET /ws/2/";
string art(const string& path) { return "webservice.fanart.tv GET /v3/music/" + path + kKey; }

const string kPlot =
    "A keeper folds a lighthouse out of sea charts & finds that ships obey it. When the charts run "
    "out, he has one night and a stack of love letters left.";
const string kPictures = "https://images.example/";

// clang-format off
const Case kCases[] = {
  {"velSearchMovie", {"The.Paper.Lighthouse.2011.1080p", 1}, 1,
   "id:tt9000001|title:The Paper Lighthouse|year:2011|url:" + kPictures +
   "paper-lighthouse-small.jpg|outline:" + kPlot + "|",
   {kMain + "/find?ref_=nv_sr_fn&q=The%20Paper%20Lighthouse&s=tt",
    kMain + "/title/tt9000001/?ref_=fn_tt_tt_1", kMain + "/title/tt9000001/plotsummary"}},
  {"velSearchMovie", {"The Paper Lighthouse", 5}, 2,
   "id:tt9000001|*\nid:tt9000008|title:The Paper Lighthouse Keeper|*", {}},
  {"velSearchMovie", {"grey ferry", 1}, 1,
   "id:tt9000003|title:The Grey Ferry|year:2010|url:|outline:It crosses twice a day.*", {}},
  // Entities stay in the title, go in the outline.
  {"velSearchMovie", {"Salt", 1}, 1,
   "id:tt9000002|title:Salt &amp; Ember|year:2012|*one stove \xE2\x80\x93 and*", {}},
  {"velSearchMovie", {"nosuchfilm", 4}, 1, "",
   {kMain + "/find?ref_=nv_sr_fn&q=nosuchfilm&s=tt"}},
  {"velSearchMovie", {"everything", -5}, 1, "id:tt9*", {}},
  {"velSearchMovie", {"Broken Lantern", 20}, 8, "*", {}},  // each result's page has a fault
  {"imdbGetMovies", {"nosuchfilm"}, 0, "", {}},
  {"imdbGetMovies", {"lighthouse", 1}, 1,
   "id:tt9000001|title:The Paper Lighthouse|year:2011|url:https://*",
   {kAkas + "/search/title?at=0&sort=moviemeter,asc&start=1&title=lighthouse"
    "&title_type=feature,video,short"}},
  {"velGetMovieByID", {"tt9000001"}, 0,
   "id:tt9000001|title:The Paper Lighthouse|year:2011|rating:7.5|mpaa:PG-13|"
   "company:Harbour Kite Pictures|poster:" + kPictures + "paper-lighthouse.jpg|plot:" + kPlot +
   "|outline:" + kPlot + "|country:Norway;UK|genre:Drama;Mystery|director:Odile Brandvik|"
   "actor:Ansel Quist;Mira Holt;J\xC3\xB8rn Vale|role:The Keeper;Captain Lise;Postman|",
   {kAkas + "/title/tt9000001/combined", kMain + "/title/tt9000001/plotsummary",
    kAkas + "/media/tt9000001/"}},
  {"velGetMovieByID", {"tt9000004"}, 0, "id:tt9000004|title:Night Bus to Marrow|year:2013|*",
   {kAkas + "/title/tt9000004/combined"}},
  {"velGetMovieByID", {"tt9000009"}, test::kOutOfRange,
   "id:tt9000009|title:Winter Without Links|year:*|rating:*|", {}},
  {"velPrintMovieByID", {"tt9000009"}, test::kOutOfRange, "", {}},
  {"velGetMovieByID", {"tt900000[1-3]{a,b}"}, 0, "*", {kAkas + "/title/tt900000[1-3]{a,b}/combined 404"}},
  {"velGetMovieByID", {"faultclosed-tt9000001"}, 18, "", {}},  // curl's status for a partial file
  {"velSearchMovie", {"faultclosed everything"}, 0, "", {}},

  {"velSearchTVShows", {"Signal.Row.S02E10.720p", 5}, 1,
   "id:tt8000001|title:Signal Row|aired:2008|poster:" + kPictures + "signal-row.jpg|outline:Five "
   "keepers share one railway line & no timetable. Somebody is moving the points at night.|",
   {kMain + "/find?q=Signal%20Row&s=tt&ttype=tv&ref_=fn_tv",
    kMain + "/title/tt8000001/?ref_=fn_tv_tt_1", kMain + "/title/tt8000001/plotsummary"}},
  {"velSearchTVShows", {"Shared", 1}, 1,
   "id:tt8000004|title:Shared by Nobody|aired:|poster:|outline:Two parts, one door.*", {}},
  {"velSearchTVShows", {"Evening", 4}, 4,
   "*\nid:tt8200004|title:Evening Class 04|aired:1999|poster:" + kPictures + "class-04*",
   {kMain + "/find*", kMain + "/title*", kMain + "/title*", kMain + "/title*", kMain + "/title*"}},
  {"velSearchTVShows", {"nosuchshow", 4}, 1, "", {kMain + "/find*"}},
  {"velSearchTVShows", {"Broken Aerial", 20}, 8, "*", {}},
  {"velSearchTVShows", {"faultclosed evening"}, 0, "", {}},
  {"velGetTVShowByID", {"tt8000001"}, 0,
   "id:tt8000001|title:Signal Row|first:2008-01-01|last:2013-12-31|rating:8.5|duration:49 min|"
   "poster:" + kPictures + "signal-row.jpg|banner:" + kPictures + "signal-row-banner.jpg|"
   "outline:*at night.|creator:Agathe Worm;Luis &Oacute;rd&oacute;&ntilde;ez|genre:Drama;Mystery|"
   "actor:Hedda Lund;Basil Okoro;Pia Vang|role:Jane Doe;Éa;O'Malley?|",
   {kMain + "/title/tt8000001/*", kMain + "/media/tt8000001/strip?ref_=tt_pv_md_1",
    kMain + "/title/tt8000001/plotsummary"}},
  {"velGetTVShowByID", {"tt8000002"}, 0,
   "*|title:The Slow Comet|first:2011-01-01|rating:7.4|duration:22 min|*|banner:" + kPictures +
   "comet-meta.jpg|*|actor:*;*;*|role:Dr. Mabel Quick;The Cook|", {}},
  {"velPrintTVShowByID", {"tt8000002"}, 0, "<?xml*\n\t<actor/>\n</tvshow>\n\n", {}},
  {"velGetTVShowByID", {"tt8000003"}, 0,
   "id:tt8000003|title:Harbour Without Pictures|first:2005-01-01|*", {}},
  {"velGetTVShowByID", {"tt8000004"}, 0,
   "id:tt8000004|title:Shared by Nobody|first:2009-01-01|last:2010-12-31|*", {}},
  {"velGetTVShowByID", {"tt1"}, 0, "id:tt1|", {}},
  {"velGetTVShowByID", {"tt8000005"}, test::kOutOfRange,
   "id:tt8000005|title:A Row Too Short|first:2001-01-01|last:2002-12-31|*", {}},
  {"velPrintTVShowByID", {"tt8000005"}, test::kOutOfRange, "", {}},
  {"velGetTVShowByID", {"faultclosed-tt8000001"}, 1, "", {}},
  {"velGetTVEpisode", {"tt8000001"}, 0,
   "id:tt8100001|title:The Points|aired:2009-03-01|season:2|episode:1|rating:8.01|thumbnail:" +
   kPictures + "still-01.jpg|outline:Night 01 on the line.|director:Director 01;Ola Brekke|"
   "genre:Drama|actor:*|role:Jane Doe;Ticket clerk / Voice 01|",
   {kMain + "/title/tt8000001/episodes?season=2&ref_=tt_eps_sn_1",
    kMain + "/title/tt8100001/?ref_=fn_tv_tt_1"}},
  {"velGetTVEpisode", {"tt8000001", 0, "", "", 2, 10}, 0, "id:tt8100010|*", {}},
  {"velGetTVEpisode", {"tt8000001", 0, "", "", 2, 12}, 0, "id:tt8100012|*", {}},
  {"velGetTVEpisode", {"tt8000001", 0, "", "", 2, 13}, -1, "", {kMain + "/title/*/episodes*"}},
  {"velGetTVEpisode", {"tt8000001", 0, "", "", 1, 1}, -1, "", {kMain + "/title/*/episodes*"}},
  {"velPrintTVEpisode", {"x"}, -1, "", {}},
  {"velGetTVEpisode", {"faultclosed-tt8000001"}, -1, "", {}},
  {"velGetTVEpisode", {"tt8000001", 0, "", "", 3, 1}, 1, "id:faultclosed-tt8100001|", {}},

  {"velSearchAlbum", {"ballast", 5, nullptr}, 2,
   "name:Ballast|artist:The Tin Harbour|date:|image:|\n"
   "name:Ballast|artist:Mira Vane & the Lanterns|date:|image:" + kPictures + "ballast.jpg|",
   {kMusic + "release-group/?query=\"ballast\"&type=album",
    art("albums/ba1a1a1a1-0001-4"), art("albums/ba1a1a1a1-0002-2")}},
  {"velSearchAlbum", {"Salt & Rope", 5, "Tin Harbour"}, 1,
   "name:Salt & Rope|artist:The Tin Harbour|date:|image:" + kPictures + "rope.jpg?a=1&b=2|",
   {kMusic + "release-group/?query=\"Salt+%26+Rope\"+and+artist:\"Tin+Harbour\"&type=album",
    art("albums/*")}},
  // The first attribute is the identifier, whatever it is, and no disc is a cover.
  {"velSearchAlbum", {"brass", 1}, 1, "name:Brass Weather|artist:The Tin Harbour|date:|image:|",
   {kMusic + "*", art("albums/Album") + " 404"}},
  {"velSearchAlbum", {"fog", 1}, 1, "name:Fog Signals|artist:The Tin Harbour|date:|image:|", {}},
  {"velGetAlbumByArtist", {"The Tin Harbour", 10}, 7,
   "name:Salt & Rope|date:1998-03-09|image:" + kPictures + "rope.jpg?a=1&b=2|\n"
   "name:Fog Signals|date:2001-11|image:" + kPictures + "fog-disc.png|\n"
   "name:Ballast|date:2003|image:|\nname:Low Water|date:2005|image:|\n"
   "name:Brass Weather|date:|image:" + kPictures + "brass.jpg|\n"
   "date:2008|image:" + kPictures + "untitled.jpg|\n"
   "name:Crossing \xC3\x9F|date:2011|image:" + kPictures + "\xC3\xBC.jpg|",
   {kMusic + "artist/?query=\"The+Tin+Harbour\"",
    kMusic + "release-group?artist=a1a1a1a1-0001&type=album", art("albums/ba1a1a1a1-0001-1"),
    art("albums/ba1a1a1a1-0001-3"), art("albums/ba1a1a1a1-0001-4"), art("albums/ba1a1a1a1-0001-6"),
    art("albums/ba1a1a1a1-0001-7"), art("albums/ba1a1a1a1-0001-8"),
    art("albums/ba1a1a1a1-0001-10")}},
  {"velGetAlbumByArtist", {"Tin Harbour", 20}, 8, "*", {}},  // the type is compared to the letter
  {"velGetArtistThumbnail", {"tin harbour", 3}, 3,
   "url:" + kPictures + "harbour/1.jpg|\n*\nurl:" + kPictures + "harbour/3.jpg|",
   {kMusic + "artist/?query=\"tin+harbour\"", art("a1a1a1a1-0001")}},
  {"velGetArtistThumbnail", {"tin harbour", 8}, 7, "*", {}},
  {"velGetArtistThumbnail", {"mira vane", 8}, 0, "", {kMusic + "*", art("*")}},
  // Three tries while the service is overloaded.
  {"velGetAlbumByArtist", {"night rush", 5}, 1, "*",
   {kMusic + "artist/?query=\"night+rush\" 503", kMusic + "artist/?query=\"night+rush\" 503",
    kMusic + "artist/?query=\"night+rush\"", kMusic + "release-group?*", art("albums/*")}},
  {"velGetArtistThumbnail", {"night rush", 5}, 1, "*", {}},
  {"velSearchAlbum", {"fault503 ballast"}, 0, "",
   {kMusic + "* 503", kMusic + "* 503", kMusic + "* 503"}},
  {"velGetAlbumByArtist", {"fault503 tin"}, 0, "",
   {kMusic + "* 503", kMusic + "* 503", kMusic + "* 503"}},
  {"velGetArtistThumbnail", {"fault500 tin"}, 0, "", {kMusic + "* 500"}},
  // A document of another shape holds nothing.
  {"velGetAlbumByArtist", {"odd shapes", 20}, 8,
   "*image:|\n*image:|\n*image:|\n*image:|\n*image:|\n*image:|\n*image:|\n*image:" + kPictures +
   "null.png|", {}},
  {"velSearchAlbum", {"odd", 20, "shapes"}, 8, "*|image:|", {}},
  {"velGetArtistThumbnail", {"odd shapes", 20}, 6,
   "url:|\nurl:|\nurl:|\nurl:|\nurl:|\nurl:" + kPictures + "odd.jpg|", {}},
  // Identifiers that are shell commands.
  {"velGetAlbumByArtist", {"curly braces", 5}, 1, "*", {}},
  {"velGetArtistThumbnail", {"curly braces", 5}, 0, "", {}},

  {"velPrintSearchAlbum", {"salt", 9, nullptr}, 0,
   "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<albumlist>\n\t<album rank=\"1\">\n"
   "\t\t<artist>The Tin Harbour</artist>\n\t\t<name>Salt &amp; Rope</name>\n"
   "\t\t<releasedate></releasedate>\n\t\t<image>" + kPictures +
   "rope.jpg?a=1&amp;b=2</image>\n\t</album>\n</albumlist>\n\n", {}},
  {"velPrintGetAlbumByArtist", {"harbour", 8}, 0,
   "<?xml*<albumlist>\n\t<album rank=\"1\">\n\t\t<name>Salt &amp; Rope</name>\n"
   "\t\t<releasedate>1998-03-09</releasedate>\n\t\t<image>" + kPictures +
   "rope.jpg?a=1&amp;b=2</image>\n\t</album>\n\t<album rank=\"2\">\n*\t<album rank=\"6\">\n"
   "\t\t<name/>\n\t\t<releasedate>2008</releasedate>\n\t\t<image>" + kPictures +
   "untitled.jpg</image>\n\t</album>\n</albumlist>\n\n", {}},
  {"velPrintGetArtistThumbnail", {"harbour", 2}, 0,
   "<?xml*<artistthumbnail>\n\t<url>" + kPictures + "harbour/1.jpg</url>\n\t<url>" + kPictures +
   "harbour/2.jpg</url>\n</artistthumbnail>\n\n", {}},
  {"velPrintSearchAlbum", {"no such"}, 1, "", {}},
  {"velPrintGetAlbumByArtist", {"torn sleeve", 5}, 1, "", {}},
};
// clang-format on

/// Letter by letter but for "*".
bool isLike(const string& text, string pattern) {
  for (const char* special : {"\\", "[", "?"}) {
    for (std::size_t at = 0; (at = pattern.find(special, at)) != string::npos; at += 2) {
      pattern.insert(at, "\\");
    }
  }
  return fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
}

TEST_F(Site, IsAskedAndItsPagesRead) {
  for (const Case& each : kCases) {
    const Answer answer = ask(each.function, each.asked);
    EXPECT_EQ(answer.result, each.result) << each.function << ' ' << each.asked.what;
    EXPECT_PRED2(isLike, answer.text, each.text) << each.function << ' ' << each.asked.what;
    EXPECT_EQ(answer.error, test::kUntouched);
    const Strings requests = test::newSiteRequests();
    if (!each.requests.empty()) {
      EXPECT_EQ(requests.size(), each.requests.size()) << each.asked.what;
    }
    for (std::size_t i = 0; i < std::min(each.requests.size(), requests.size()); ++i) {
      const string& wanted = each.requests[i];
      const bool hasStatus = wanted[wanted.size() - 4] == ' ';
      EXPECT_PRED2(isLike, requests[i], wanted + (hasStatus ? "" : " 200"));
    }
  }
}

TEST_F(Site, IsAskedForEachResultOnce) {
  const Answer titles = ask("velSearchMovie", {"everything", 20});
  EXPECT_EQ(titles.result, 20);
  test::newSiteRequests();
  const Answer albums = ask("velGetAlbumByArtist", {"forty winks", 25});
  const Strings requests = test::newSiteRequests();
  ASSERT_THAT(requests, SizeIs(2 + 25));
  for (std::size_t i = 1; i <= 25; ++i) {
    const string n = std::to_string(i);
    EXPECT_TRUE(i > 20 || titles.text.find("outline:Drawer " + n) != string::npos) << n;
    EXPECT_EQ(requests[i + 1], art("albums/ba1a1a1a1-0100-" + n) + " 200");
    EXPECT_THAT(albums.text, HasSubstr("image:" + kPictures + "sleep" + n + ".jpg|"));
  }
}

TEST_F(Site, ClearsTheCallersLists) {
  velTVShowInfo show = {};
  show.genres = show.actor_names = show.actor_roles = {"old"};
  EXPECT_EQ(velGetTVShowByID("tt8000001", nullptr, &show), 0);
  velMovieInfo_ movie = {};
  movie.country = movie.genre = movie.director = movie.actor = movie.role = {"old"};
  EXPECT_EQ(velGetMovieByID("tt9000001", &movie), 0);
  for (const Strings& list : {movie.country, movie.genre, movie.director, movie.actor, movie.role,
                              show.genres, show.actor_names, show.actor_roles}) {
    EXPECT_NE(list.at(0), "old");
  }
  velFreeMovieInfo(&movie);
  velFreeTVShowInfo(&show);
}

TEST_F(Site, GivesFaultyPagesForWhatTheyHold) {
  for (const string fault : {"fault500", "faultempty", "faultcut", "faultbinary", "faultbig"}) {
    const string movie = fault + "-tt9000001";
    const string show = fault + "-tt8000001";
    const string words = fault + " everything";
    EXPECT_EQ(ask("velGetMovieByID", {movie.c_str()}).result, 0) << fault;
    EXPECT_EQ(ask("velGetTVShowByID", {show.c_str()}).result, 0) << fault;
    EXPECT_LE(ask("velGetTVEpisode", {show.c_str()}).result, 0) << fault;
    EXPECT_LE(ask("velSearchMovie", {words.c_str()}).result, 2) << fault;
    EXPECT_LE(ask("velSearchTVShows", {words.c_str()}).result, 2) << fault;
  }
  for (const char* unknown : {"Nobody At All", "", "faultempty tin", "faultcut tin", "silent room",
                              "faultbinary tin", "faultclosed tin", "faultmoved tin"}) {
    for (const char* function :
         {"velGetAlbumByArtist", "velGetArtistThumbnail", "velSearchAlbum"}) {
      const Answer answer = ask(function, {unknown, 5, unknown});
      EXPECT_EQ(answer.result, 0) << function << ' ' << unknown;
      EXPECT_FALSE(answer.stored && string(unknown) != "silent room") << function << unknown;
    }
  }
}

TEST_F(Site, GivesAnEmptyArrayForCountsBelowOne) {
  for (const int count : {0, -4}) {
    for (const char* function : {"SearchAlbum", "GetAlbumByArtist", "GetArtistThumbnail"}) {
      const bool isSearch = string(function) == "SearchAlbum";
      const Asked asked = {isSearch ? "ballast" : "tin harbour", count};
      const Answer answer = ask(string("vel") + function, asked);
      EXPECT_EQ(answer.result, isSearch ? count : 0);
      EXPECT_TRUE(answer.stored);
      EXPECT_THAT(test::newSiteRequests(), SizeIs(isSearch ? 1 : 2));
      const Answer printed = ask(string("velPrint") + function, asked);
      EXPECT_EQ(std::to_string(printed.result) + printed.text, "1");
      test::newSiteRequests();
    }
  }
}

TEST_F(Site, TellsWhatArtworkCannotBeRead) {
  const char* const rows[][2] = {
      {"velGetAlbumByArtist",  // abandoned, with what it has
       "name:First Press|date:1990|image:https://images.example/press.jpg|\n"
       "name:Second Press|date:1991|"},
      {"velSearchAlbum",
       "name:First Press|*image:*\nname:Second Press|artist:Torn Sleeve|date:|image:|\n"
       "name:Third Press|artist:Torn Sleeve|date:|image:https://images.example/third.jpg|"},
      {"velGetArtistThumbnail", ""}};
  for (const auto& [function, text] : rows) {
    Answer answer;
    const bool isSearch = string(function) == "velSearchAlbum";
    EXPECT_THAT(test::standardErrorOf([&, function = function] {
                  answer = ask(function, {isSearch ? "press" : "torn sleeve", 5});
                }),
                StartsWith("Failed to parse configuration\n* Line 1, Column 1\n"));
    EXPECT_EQ(answer.result, isSearch ? 3 : 0);
    EXPECT_PRED2(isLike, answer.text, text);
  }
}

TEST_F(Site, IsNotReachedWithoutAConnectionOrATemporaryName) {
  const string setup = test::readFile("/run/box/.curlrc");
  test::writeFile("/run/box/.curlrc", "connect-to = \"::127.0.0.1:1\"\n");
  const std::map<string, int> others = {{"velGetMovieByID", 7},     {"imdbGetMovieInfo", 7},
                                        {"velPrintSearchMovie", 0}, {"velGetTVEpisode", -1},
                                        {"velPrintTVEpisode", -1},  {"velPrintSearchTVShows", 0}};
  for (const Lookup& lookup : test::lookups()) {
    if (lookup.function.find("KTV") != string::npos) {
      continue;
    }
    const auto other = others.find(lookup.function);
    const int usual = lookup.kind == Kind::kFinds ? 0 : 1;
    const Answer answer = ask(lookup, lookup.usual);
    EXPECT_EQ(answer.result, other != others.end() ? other->second : usual) << lookup.function;
    EXPECT_EQ(answer.text, "") << lookup.function;
    EXPECT_FALSE(answer.stored) << lookup.function;
  }
  test::writeFile("/run/box/.curlrc", setup);
  ASSERT_EQ(chmod("/tmp", 0), 0);
  for (const char* function : {"velGetAlbumByArtist", "velGetArtistThumbnail", "velSearchAlbum"}) {
    EXPECT_EQ(ask(function, {"tin harbour", 5}).result, 0);
  }
  chmod("/tmp", 01777);
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(Site, FillsADiskThatLeavesNothingBehind) {
  string filler(1 << 20, 'x');
  std::FILE* const disk = std::fopen("/tmp/filler", "w");
  ASSERT_NE(disk, nullptr);
  std::setbuf(disk, nullptr);
  for (std::size_t size = filler.size(); size > 0;) {
    if (std::fwrite(filler.data(), 1, size, disk) < size) {
      size /= 2;
    }
  }
  // From no room at all to room for the headers and a part of the document.
  for (int pages = 0; pages < 3; ++pages) {
    EXPECT_EQ(ask("velGetAlbumByArtist", {"forty winks", 40}).result, 0) << pages;
    EXPECT_EQ(ask("velSearchAlbum", {"sleep", 40}).result, 0) << pages;
    ASSERT_EQ(ftruncate(fileno(disk), lseek(fileno(disk), 0, SEEK_END) - 4096), 0);
  }
  std::fclose(disk);
  std::remove("/tmp/filler");
  EXPECT_EQ(ask("velGetAlbumByArtist", {"forty winks", 40}).result, 40);
}

TEST_F(Site, AnswersManyThreadsEachItsOwn) {
  std::vector<std::thread> threads;
  for (int i = 1; i <= 6; ++i) {
    threads.emplace_back([i] {
      const string id = "tt900000" + std::to_string(i);
      const Asked movie = {id.c_str()};
      EXPECT_THAT(ask("velGetMovieByID", movie).text, StartsWith("id:" + id + "|"));
      EXPECT_THAT(ask("velGetMovieByID", movie).text, HasSubstr("|genre:"));
      EXPECT_THAT(ask("velGetTVShowByID", {"tt8000003"}).text, HasSubstr("|title:Harbour Without"));
      EXPECT_THAT(ask("velGetTVEpisode", {"tt8000001", 0, "", "", 2, i}).text,
                  HasSubstr("|aired:2009-03-0" + std::to_string(i)));
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

template <class Record>
void expectFreed(void (*release)(Record*, int)) {
  release(nullptr, 5);
  release(static_cast<Record*>(std::calloc(3, sizeof(Record))), 0);
  release(static_cast<Record*>(std::calloc(3, sizeof(Record))), -1);
}

TEST(Free, TakesNullAndCountsBelowOne) {
  expectFreed(velFreeMovies);
  expectFreed(velFreeTVShows);
  expectFreed(velFreeAlbums);
  expectFreed(velFreeThumbs);
  velFreeMovieInfo(nullptr);
  velFreeTVShowInfo(nullptr);
  velFreeTVEpisode(nullptr);
}

}  // namespace
