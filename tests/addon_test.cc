// What the library asks an add-on, and what it makes of the answer, or of none.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

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
using testing::EndsWith;
using testing::IsEmpty;

class AddOn : public testing::Test {
 protected:
  void SetUp() override { test::newSiteRequests(); }
  void TearDown() override {
    test::removeRegistry();
    std::remove("/etc/config/catalox.conf");
    EXPECT_THAT(test::newSiteRequests(), IsEmpty());
    EXPECT_EQ(test::Holdings::after(before_), before_);
  }

 private:
  test::Holdings before_ = test::Holdings::now();
};

struct Case {
  const char* function;
  Asked asked;
  const char* document;
  const char* arguments;
  int result;
  const char* text;
};

constexpr char kMovies[] =
    "<?xml version='1.0'?>\n<movielist><movie><id><![CDATA[1]]></id>"
    "<title><![CDATA[A & <B>]]>x<![CDATA[C]]></title><year>2010</year><url><![CDATA[]]></url>"
    "<outline><![CDATA[O]]></outline></movie><other/><movie/></movielist>";
constexpr char kMovie[] =
    "<movie><poster><![CDATA[P]]></poster><title><![CDATA[T]]></title><year><![CDATA[2010]]></year>"
    "<director><![CDATA[D1]]></director><director>plain</director><director><![CDATA[]]></director>"
    "<DIRECTOR><![CDATA[D2]]></DIRECTOR><country><![CDATA[NO]]></country>"
    "<plot><![CDATA[L]]></plot><actor><name><![CDATA[A]]></name><role><![CDATA[]]></role></actor>"
    "<actor><role><![CDATA[lost]]></role></actor>"
    "<actor><name><![CDATA[B]]></name><role><![CDATA[R]]></role></actor></movie>";
constexpr char kRoleless[] =
    "<movie><title><![CDATA[T]]></title><plot><![CDATA[P]]></plot>"
    "<actor><name><![CDATA[A]]></name><role>plain</role></actor></movie>";
constexpr char kShows[] =
    "<tvshowlist><tvshow><url><![CDATA[p]]></url><id><![CDATA[1]]></id>"
    "<title><![CDATA[Tom & <Jerry> &amp;]]></title><first_air_date>plain</first_air_date>"
    "<outline><![CDATA[]]></outline></tvshow><tvshow/>"
    "<tvshow><outline><![CDATA[O]]></outline></tvshow></tvshowlist>";
constexpr char kShow[] =
    "<tvshow><id><![CDATA[i]]></id><title><![CDATA[T]]></title><banner><![CDATA[]]></banner>"
    "<duration>plain</duration><genres><![CDATA[G]]></genres><genres><![CDATA[]]></genres>"
    "<genre>no</genre><network><![CDATA[N]]></network><network><![CDATA[M]]></network><creator/>"
    "<actor><name><![CDATA[A]]></name></actor><actor><role><![CDATA[R]]></role></actor><actor/>"
    "</tvshow>";
constexpr char kEpisode[] =
    "<tvepisode><thumbnail><![CDATA[t]]></thumbnail><url><![CDATA[u]]></url>"
    "<director><![CDATA[D]]></director><rating><![CDATA[8]]></rating></tvepisode>";
constexpr char kUrlAlone[] = "<tvepisode><thumbnail/><url><![CDATA[u]]></url></tvepisode>";
constexpr char kAlbums[] =
    "<albumlist><album><image><![CDATA[I]]></image><name><![CDATA[N & <M>]]></name>"
    "<artist><![CDATA[A]]></artist><releasedate><![CDATA[]]></releasedate></album>"
    "<other/><album><name>plain</name></album></albumlist>";
constexpr char kPictures[] =
    "<artistthumbnail><url><![CDATA[1]]></url><url>plain</url><url/><url><![CDATA[]]></url>"
    "</artistthumbnail>";
constexpr char kSong[] =
    "<KtvInfo><Genre><Name>Pop</Name><Name> </Name><Name>R&amp;B</Name></Genre>"
    "<Title> Song </Title><TitleWordCount>07</TitleWordCount><Language>2x</Language>"
    "<AudioTrack>-5</AudioTrack><Gain>99999999999</Gain><Artist>"
    "<Name Gender='2' Nationality='158'>A</Name><Name/><Name Gender='x'>B</Name></Artist>"
    "<Artist><Name>C</Name></Artist></KtvInfo>";
constexpr char kNoText[] = "not XML <&\n\nno line end";

// clang-format off
const Case kCases[] = {
  {"velSearchMovie", {"The.Film's.2010.720p", -3}, kMovies, "[searchmovie][-t][The Film's][-n][-3]",
   2, "id:1|title:A & <B>|url:|outline:O|\n"},
  {"velSearchMovie", {"x"}, "<movielist></movielist>", "[searchmovie][-t][x][-n][2]", 0, ""},
  {"velPrintSearchMovie", {"x"}, kMovies, "[searchmovie][-t][x][-n][2]", 0,
   "<movielist><movie rank=\"1\"><url></url><id>1</id><title>A &amp; &lt;B&gt;</title><year/>"
   "<outline>O</outline></movie><movie rank=\"2\"><url/><id/><title/><year/></movie></movielist>"},
  {"velGetMovieByID", {"abcde'X"}, kMovie, "[getmovieinfobyid][-i]['X]", 0,
   "title:T|year:2010|poster:P|plot:L|country:NO|director:D1;;D2|actor:A;B|role:;R|"},
  {"velGetMovieByID", {"abc"}, kRoleless, "[getmovieinfobyid][-i][]", test::kLogicError,
   "title:T|actor:A|"},
  {"velPrintMovieByID", {"abcde"}, kRoleless, "[getmovieinfobyid][-i][]", test::kLogicError, ""},
  {"velPrintMovieByID", {"abcdeX"}, kMovie, "[getmovieinfobyid][-i][X]", 0,
   "<movie><title>T</title><year>2010</year><rating/><id/><director>D1</director>"
   "<director></director><director>D2</director><company/><mpaa/><actor><name>A</name><role></role>"
   "</actor><actor><name>B</name><role>R</role></actor><outline/><plot>L</plot><poster>P</poster>"
   "</movie>"},

  {"velSearchTVShows", {"The.Show's.S01E02.720p", -3, "", nullptr}, kShows,
   "[searchtvshow][-t][The Show's][-n][-3][-l][ger]", 3,
   "id:1|title:Tom & <Jerry> &amp;|poster:p|outline:|\n\noutline:O|"},
  {"velSearchTVShows", {"x"}, "<tvshowlist/>", "[searchtvshow][-t][x][-n][2][-l][en]", 0, ""},
  {"velPrintSearchTVShows", {"x", 1, "", "fr-CA"}, kShows,
   "[searchtvshow][-t][x][-n][1][-l][fr-CA]", 0,
   "<tvshowlist><tvshow rank=\"1\"><id><![CDATA[1]]></id>"
   "<title><![CDATA[Tom & <Jerry> &amp;]]></title><first_air_date><![CDATA[]]></first_air_date>"
   "<poster><![CDATA[p]]></poster><outline/></tvshow><tvshow rank=\"2\"><id><![CDATA[]]></id>"
   "<title><![CDATA[]]></title><first_air_date><![CDATA[]]></first_air_date>"
   "<poster><![CDATA[]]></poster><outline/></tvshow><tvshow rank=\"3\"><id><![CDATA[]]></id>"
   "<title><![CDATA[]]></title><first_air_date><![CDATA[]]></first_air_date>"
   "<poster><![CDATA[]]></poster><outline><![CDATA[O]]></outline></tvshow></tvshowlist>"},
  {"velGetTVShowByID", {"abcde'X", 0, "", nullptr}, kShow, "[gettvshowinfo][-i]['X][-l][ger]", 0,
   "id:i|title:T|banner:|network:N;M|genre:G|actor:A;;|role:;R;|"},
  {"velPrintTVShowByID", {"abc"}, kShow, "[gettvshowinfo][-i][][-l][en]", 0,
   "<tvshow><id><![CDATA[i]]></id><title><![CDATA[T]]></title><first_air_date/><last_air_date/>"
   "<poster/><banner><![CDATA[]]></banner><rating/><outline/><duration/><content_rating/>"
   "<networks><![CDATA[N]]></networks><networks><![CDATA[M]]></networks><creator/>"
   "<genre><![CDATA[G]]></genre><actor><name><![CDATA[A]]></name><role><![CDATA[]]></role></actor>"
   "<actor><name><![CDATA[]]></name><role><![CDATA[R]]></role></actor>"
   "<actor><name><![CDATA[]]></name><role><![CDATA[]]></role></actor></tvshow>"},
  {"velGetTVEpisode", {"abcdeX", 0, "", "de", 0, 12}, kEpisode,
   "[gettvshowinfo][-i][X][-s][0][-e][12][-l][de]", 0,
   "episode:12|rating:8|thumbnail:t|director:D|"},
  {"velGetTVEpisode", {"abcdeX", 0, "", nullptr, 3, 0}, kUrlAlone,
   "[gettvshowinfo][-i][X][-s][3][-e][0][-l][ger]", 0, "season:3|thumbnail:u|"},
  {"velPrintTVEpisode", {"abcdeX", 0, "", "de", 0, -1}, kEpisode,
   "[gettvshowinfo][-i][X][-s][0][-e][-1][-l][de]", 0,
   "<tvepisode><id/><title/><air_date/><season_number><![CDATA[0]]></season_number>"
   "<episode_number><![CDATA[-1]]></episode_number><outline/><thumbnail><![CDATA[t]]></thumbnail>"
   "<genre/><actor/><director><![CDATA[D]]></director><rating><![CDATA[8]]></rating></tvepisode>"},

  {"velSearchAlbum", {"a 'b\" & $c", 1, nullptr}, kAlbums,
   "[searchAlbum][-b][a 'b\" & $c][-a][][-n][1]", 2, "name:N & <M>|artist:A|date:|image:I|\n"},
  {"velSearchAlbum", {"x"}, "<albumlist/>", "[searchAlbum][-b][x][-a][][-n][2]", 0, ""},
  {"velGetAlbumByArtist", {"Artist", -2}, kAlbums, "[getAlbumByArtist][-a][Artist][-n][-2]", 2,
   "name:N & <M>|date:|image:I|\n"},
  {"velGetArtistThumbnail", {"X", 3}, kPictures, "[getArtistThumbnail][-a][X][-n][3]", 4,
   "url:1|\n\n\nurl:|"},
  {"velGetArtistThumbnail", {"X"}, "<artistthumbnail/>", "[getArtistThumbnail][-a][X][-n][2]", 0,
   ""},
  {"velPrintSearchAlbum", {"B", 7, nullptr}, kNoText, "[searchAlbum][-b][B][-a][][-n][7]", 0,
   kNoText},
  {"velPrintGetAlbumByArtist", {"A", 7}, kNoText, "[getAlbumByArtist][-a][A][-n][7]", 0, kNoText},
  {"velPrintGetArtistThumbnail", {"A", 7}, kNoText, "[getArtistThumbnail][-a][A][-n][7]", 0,
   kNoText},

  {"velGetKTVInfo", {"no folder; $(exit 1)"}, kSong, "[getKTVInfo][-f][no folder; $(exit 1)]", 0,
   "title:Song|language:2|track:-5|gain:2147483647|A:2|from:158|B:0|words:7|of:|genre:Pop;R&B|"},
  {"velGetKTVInfo", {nullptr}, "<KtvInfo><Title><![CDATA[New]]></Title><Gain/><Artist/></KtvInfo>",
   "[getKTVInfo][-f][]", 0, ""},
};
// clang-format on

/// Without the declaration and the layout, where there are any.
string compact(string document) {
  const string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  if (document.compare(0, declaration.size(), declaration) != 0) {
    return document;
  }
  EXPECT_THAT(document, EndsWith(">\n\n"));
  document.erase(0, declaration.size());
  document.erase(std::remove_if(document.begin(), document.end(),
                                [](char c) { return c == '\n' || c == '\t'; }),
                 document.end());
  return document;
}

TEST_F(AddOn, IsAskedAndItsDocumentRead) {
  test::writeFile("/etc/config/catalox.conf", "[addon]\nLANG=german\n");
  for (const Case& each : kCases) {
    const Lookup& lookup = test::lookup(each.function);
    test::answerWith(lookup.type, each.document);
    const Answer answer = ask(lookup, each.asked);
    EXPECT_EQ(test::arguments(), each.arguments);
    EXPECT_EQ(answer.result, each.result) << each.function;
    EXPECT_EQ(compact(answer.text), each.text) << each.function;
    EXPECT_EQ(answer.error, test::kUntouched);
    EXPECT_EQ(answer.stored, lookup.kind == Kind::kFinds)
        << each.function;  // if only an empty array
  }
}

TEST_F(AddOn, AppendsToTheCallersLists) {
  test::answerWith("Movie", kMovie);
  velMovieInfo_ movie = {};
  movie.director = {"kept"};
  EXPECT_EQ(velGetMovieByID("abcdeX", &movie), 0);
  EXPECT_THAT(movie.director, testing::ElementsAre("kept", "D1", "", "D2"));
  velFreeMovieInfo(&movie);
  test::answerWith("TV", kShow);
  velTVShowInfo show = {};
  show.genres = {"kept"};
  EXPECT_EQ(velGetTVShowByID("abcdeX", "en", &show), 0);
  EXPECT_THAT(show.genres, testing::ElementsAre("kept", "G"));
  velFreeTVShowInfo(&show);
  test::answerWith("KTV", "<KtvInfo><Gain>1</Gain></KtvInfo>");
  KTV_ExtraData_t song = {};
  song.title = "kept";
  song.genres = {"kept"};
  EXPECT_EQ(velGetKTVInfo("x", &song), 0);
  EXPECT_EQ(test::described(song), "title:kept|gain:1|genre:kept|");
}

TEST_F(AddOn, LosesWhatFollowsAZeroByteInALineThatIsPrinted) {
  const string longLine(5000, 'x');
  test::answerWith("Music", string("a\0b\nc", 5) + longLine);
  EXPECT_EQ(ask("velPrintSearchAlbum", {"x"}).text, "ac" + longLine);
}

TEST_F(AddOn, OfAnotherClassServesTheMusicPrintFunctionsAlone) {
  const string shell =
      test::writeScript("/etc/config/addon", "for file; do :; done\necho >$file\n");
  for (const Lookup& lookup : test::lookups()) {
    test::writeFile("/etc/config/zorp.conf", "[x]\nClass=Other\nType=" + lookup.type +
                                                 "\nEnable=TRUE\nShell=" + shell + "\n");
    const bool serves = lookup.type == "Music" && lookup.kind == Kind::kPrints;
    EXPECT_EQ(ask(lookup, lookup.usual).text == "\n", serves) << lookup.function;
    EXPECT_EQ(test::newSiteRequests().empty(),
              serves || lookup.function.find("KTV") != string::npos)
        << lookup.function;
  }
}

/// What the header says that a lookup gives when its add-on ended with `status`, or with 0 but
/// without a document.
int failureOf(const Lookup& lookup, int status) {
  if (lookup.kind == Kind::kFinds) {
    return 0;
  }
  if (lookup.type == "Music" || lookup.type == "KTV" || lookup.function == "velPrintMovieByID") {
    return 1;
  }
  const bool isDetails = lookup.function.find("Search") == string::npos;
  return status == 0 && isDetails ? 1 : status;
}

void expectFailure(const Lookup& lookup, int status, const string& how) {
  const Answer answer = ask(lookup, lookup.usual);
  EXPECT_EQ(answer.result, failureOf(lookup, status)) << lookup.function << ": " << how;
  EXPECT_EQ(answer.text, "") << lookup.function << ": " << how;
  EXPECT_FALSE(answer.stored) << lookup.function << ": " << how;
  const bool tells = lookup.kind == Kind::kFinds && lookup.type != "Music" && status != 0;
  EXPECT_EQ(answer.error, tells ? status : test::kUntouched) << lookup.function << ": " << how;
}

/// Calls visit(lookup) for each that asks an add-on, which the command is.
template <class Visit>
void forEachLookup(const string& command, Visit visit) {
  for (const Lookup& lookup : test::lookups()) {
    if (!lookup.type.empty()) {
      test::registerAddOn(lookup.type, command);
      visit(lookup);
    }
  }
}

TEST_F(AddOn, ThatFailsGivesItsStatusAndNothingElse) {
  struct Failure {
    const char* spoil;  // as tests/addon.sh knows it
    int status;
    bool isCopied;  // a document that is none is printed by the music functions all the same
  };
  const Failure failures[] = {{"status", 3, false}, {"signal", 1, false}, {"nothing", 0, false},
                              {"fifo", 0, false},   {"folder", 0, false}, {"endless", 0, false},
                              {"loop", 0, false},   {"huge", 0, false},   {"empty", 0, true},
                              {"cut", 0, true},     {"root", 0, true},    {"bytes", 0, true},
                              {"deep", 0, true},    {"program", 0, true}};
  const long before = test::mostMemoryKiB();
  for (const Failure& failure : failures) {
    setenv("SPOIL", failure.spoil, 1);
    forEachLookup(QUILP_TESTS "/addon.sh", [&](const Lookup& lookup) {
      if (!failure.isCopied || lookup.type != "Music" || lookup.kind != Kind::kPrints) {
        expectFailure(lookup, failure.status, failure.spoil);
      }
    });
    if (string(failure.spoil) == "huge") {
      EXPECT_LT(test::mostMemoryKiB() - before, 16 * 1024);
    }
  }
  unsetenv("SPOIL");
}

/// A details lookup of the document behind `start`, in which `repeated` fills 8 MiB.
int movieOf(const string& start, const string& repeated, const string& end) {
  string document = start;
  while (document.size() < 8U << 20) {
    document += repeated;
  }
  test::answerWith("Movie", document + end);
  return ask("velGetMovieByID", {"abcde1"}).result;
}

TEST_F(AddOn, WritesDocumentsThatCostTimeAndMemoryInProportionToItsSize) {
  const long before = test::mostMemoryKiB();
  string entities = "<!DOCTYPE movie [<!ENTITY a0 \"aaaaaaaaaaaaaaaaaaaa\">";
  for (int i = 1; i < 60; ++i) {
    const string inner = "&a" + std::to_string(i - 1) + ";";
    entities.append("<!ENTITY a").append(std::to_string(i)).append(" \"");
    entities.append(inner).append(inner).append(inner).append("\">");
  }
  EXPECT_EQ(movieOf(entities + "]><movie><title>&a59;", "&a59;", "</title></movie>"), 0);
  EXPECT_EQ(movieOf("<!DOCTYPE movie ", "[<![", ""), 1);
  EXPECT_EQ(movieOf("<!DOCTYPE movie [<!ENTITY x SYSTEM \"file:///dev/zero\">]><movie>&x;", "&x;",
                    "</movie>"),
            0);
  EXPECT_EQ(movieOf("<movie>", "<a>", ""), 1);
  EXPECT_EQ(movieOf("<movie>", "<genre/>", "</movie>"), 0);
  EXPECT_EQ(movieOf("<movie ", "a=\"\" ", "/>"), 1);
  EXPECT_EQ(movieOf("<movie>", "<!--", ""), 1);
  EXPECT_LT(test::mostMemoryKiB() - before, 8 * 30 * 1024);
}

TEST_F(AddOn, ThatCannotBeExecutedWroteNothing) {
  test::writeFile("/etc/config/plain", "#!/bin/sh\nexit 7\n");
  std::vector<const char*> commands = {"", "/etc/config/none", "/etc/config/plain", "/etc",
                                       "no-such-program"};
#ifndef __arm__  // the emulator of the tests does not tell what became of an exec
  test::writeScript("/etc/config/orphan", "");
  test::writeFile("/etc/config/orphan", "#!/no/such/interpreter\n");
  commands.push_back("/etc/config/orphan");
  // The system's shell runs a script that names no interpreter.
  test::writeScript("/etc/config/script", "");
  test::writeFile("/etc/config/script", "exit 5\n");
  test::registerAddOn("Movie", "/etc/config/script");
  EXPECT_EQ(ask("velGetMovieByID", {"abcde"}).result, 5);
#endif
  for (const char* command : commands) {
    forEachLookup(command, [&](const Lookup& lookup) { expectFailure(lookup, 0, command); });
  }
}

TEST_F(AddOn, IsSearchedAlongThePath) {
  const char* const before = std::getenv("PATH");
  ASSERT_NE(before, nullptr);
  const string path = before;
  mkdir("/etc/config/bin", 0755);
  test::writeScript("/etc/config/bin/addon", "exit 5\n");
  test::registerAddOn("Movie", "addon");
  ASSERT_EQ(chdir("/etc/config/bin"), 0);  // an empty folder in the path is this one
  EXPECT_EQ(ask("velGetMovieByID", {"abcde"}).result, 1);
  for (const string& folders :
       {string("/none:/etc/config/bin"), "/etc/config/bin:" + path, string("/none:")}) {
    setenv("PATH", folders.c_str(), 1);
    EXPECT_EQ(ask("velGetMovieByID", {"abcde"}).result, 5) << folders;
  }
  setenv("PATH", path.c_str(), 1);
}

TEST_F(AddOn, IsToldTheWordsOfASearch) {
  const char kKeep[] =
      "{ env | grep -E '^QUILP_(NAME|YEAR)'; echo $HOME; } >/etc/config/words\ntrue\n";
  const string home = string(std::getenv("HOME")) + '\n';
  // What the host inherited is of another search.
  setenv("QUILP_NAME", "inherited", 1);
  setenv("QUILP_YEAR", "1999", 1);
  test::answerWith("Movie", kMovies, kKeep);
  ask("velSearchMovie", {"The.Film 2049 (2010) 720p"});
  EXPECT_EQ(test::readFile("/etc/config/words"), "QUILP_NAME=The.Film 2049 (2010) 720p\n" + home);
  ask("velGetMovieByID", {"abcde1"});
  EXPECT_EQ(test::readFile("/etc/config/words"), home);
  test::answerWith("TV", kShows, kKeep);
  ask("velPrintSearchTVShows", {"A B"});
  EXPECT_EQ(test::readFile("/etc/config/words"), "QUILP_NAME=A B\n" + home);
  unsetenv("QUILP_NAME");
  unsetenv("QUILP_YEAR");
}

TEST_F(AddOn, IsHeardByNobody) {
  setenv("SPOIL", "loud", 1);
  test::registerAddOn("Movie", QUILP_TESTS "/addon.sh");
  EXPECT_EQ(test::standardErrorOf([] {
              EXPECT_THAT(ask("velPrintSearchMovie", {"x"}).text, testing::StartsWith("<?xml"));
            }),
            "");
  unsetenv("SPOIL");
}

TEST_F(AddOn, InheritsNothingOfItsRedirection) {
  test::answerWith("Movie", kMovies, "ls -l /proc/self/fd >/etc/config/open\ntrue\n");
  EXPECT_EQ(ask("velSearchMovie", {"x"}).result, 2);
  const string open = test::readFile("/etc/config/open");
  EXPECT_NE(open.find(" 2 -> /dev/null"), string::npos);
  EXPECT_THAT(open,
              testing::Not(testing::ContainsRegex("l-w[^\n]* ([3-9]|[0-9][0-9]) -> /dev/null")));
}

TEST_F(AddOn, LeavesAProcessThatIsNotWaitedFor) {
  test::answerWith("Movie", kMovies, "sleep 60 >&1 2>&1 &\necho $! >/etc/config/pid\n");
  EXPECT_EQ(ask("velSearchMovie", {"x"}).result, 2);
  EXPECT_EQ(std::system(("kill " + test::readFile("/etc/config/pid")).c_str()), 0);
}

TEST_F(AddOn, IsLookedForInAReadableRegistry) {
  const auto look = [] {
    EXPECT_EQ(ask("velGetKTVInfo", {"A_Song"}).text, "title:Song|A:0|words:1|");
  };
  const string message = "iniparser_load(/etc/config/zorp.conf) failed!\n";
  EXPECT_EQ(test::standardErrorOf(look), message);
  test::writeFile("/etc/config/zorp.conf", "[a\nType\n===\n");
  EXPECT_THAT(test::standardErrorOf(look), EndsWith(message));
  for (const string empty : {"", "# nothing\n", "Type=KTV\n"}) {
    test::writeFile("/etc/config/zorp.conf", empty);
    EXPECT_EQ(test::standardErrorOf(look), "") << empty;
  }
}

TEST_F(AddOn, OfALongNameOrCommandStaysInItsBuffer) {
  // The cut key of the first section is a name that stands there without a value.
  const string name(79, 'n');
  const string folder = "/etc/config/" + string(80, 'f');
  string command = folder;
  for (int i = 0; i < 10; ++i) {
    command += "/../" + folder.substr(12);
  }
  mkdir(folder.c_str(), 0755);
  test::writeScript(folder + "/a", "exit 5\n");
  test::writeFile("/etc/config/zorp.conf",
                  "[" + name + "]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/long\n[" +
                      name + "more]\nEnable=TRUE\n[" + name.substr(0, 70) +
                      "]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=" + command + "/a\n");
  EXPECT_EQ(ask("velGetMovieByID", {"abcde"}).result, 5);
}

}  // namespace
