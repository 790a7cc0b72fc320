// What comes from a page, a document, the registry or a caller reaches curl and the add-on byte for
// byte, and starts no other program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "libquilp.h"
#include "lookups.h"
#include "support.h"

namespace {

using std::string;
using test::ask;
using test::Asked;
using Strings = std::vector<string>;

constexpr char kAddOn[] = "/etc/config/addon";
constexpr char kPage[] = "/etc/config/page";
constexpr char kLog[] = "/etc/config/trace";

/// A program that was started, with its arguments; its own name is the first.
struct Program {
  string file;
  Strings arguments;
};

/// What the call starts, in this order. A shell that has something to say is a failure.
std::vector<Program> programsStartedBy(const std::function<void()>& call) {
  std::remove(kLog);
  setenv("QUILP_TRACE", kLog, 1);
  setenv("LD_PRELOAD", QUILP_TRACER, 1);
  EXPECT_EQ(test::standardErrorOf(call).find("sh: "), string::npos);
  unsetenv("LD_PRELOAD");
  const string log = test::readFile(kLog);
  std::size_t at = 0;
  const auto next = [&] {
    const string text = log.c_str() + at;
    at += text.size() + 1;
    return text;
  };
  std::vector<Program> programs;
  while (at < log.size()) {
    Program program = {next(), {}};
    for (int n = std::stoi(next()); n > 0; --n) {
      program.arguments.push_back(next());
    }
    programs.push_back(program);
  }
  return programs;
}

/// The addresses that curl is called with. What else it is given must be what the library says to
/// it, and no other program may be started but the shell and rm.
Strings addressesFetchedBy(const std::function<void()>& call) {
  static const Strings known = {"-g", "-s",         "-L", "-A", "Mozilla/5.0", "--connect-timeout",
                                "15", "--max-time", "25", "-D", "-o"};
  Strings addresses;
  for (const Program& program : programsStartedBy(call)) {
    const Strings& arguments = program.arguments;
    if (program.file == "/usr/bin/dash" || program.file == "/usr/bin/rm") {
      EXPECT_GE(arguments.size(), 3U);
      continue;
    }
    EXPECT_EQ(program.file, QUILP_STAND_IN);
    EXPECT_EQ(arguments.at(0), "/sbin/curl");
    for (std::size_t i = 1; i < arguments.size(); ++i) {
      const string& argument = arguments[i];
      if (std::count(known.begin(), known.end(), argument) == 0 &&
          argument.compare(0, 14, "/tmp/libquilp.") != 0 &&
          argument.compare(0, 9, "/var/tmp/") != 0) {
        addresses.push_back(argument);
      }
    }
  }
  return addresses;
}

string withoutBytes(string text, const string& bytes) {
  text.erase(std::remove_if(text.begin(), text.end(),
                            [&](char c) { return bytes.find(c) != string::npos; }),
             text.end());
  return text;
}

string inQuery(string value) {
  char* const encoded = libquilp::url_encode(value.data());
  value = encoded;
  std::free(encoded);
  for (std::size_t at = 0; (at = value.find('&', at)) != string::npos; ++at) {
    value.replace(at, 1, "%26");
  }
  return value;
}

string inAttribute(const string& value) {
  string text;
  for (const char c : value) {
    text += static_cast<unsigned char>(c) < 0x80 ? "&#" + std::to_string(c) + ";" : string(1, c);
  }
  return text;
}

/// With the value for "%": as far as an identifier's buffer holds it for "^", as a keyword for "~"
/// and as one in an address for "#". "|" is a zero byte.
string filled(const string& pattern, const string& value) {
  string text;
  for (const char c : pattern) {
    text += c == '%'   ? value
            : c == '^' ? value.substr(0, 63)
            : c == '~' ? ProcessKeyword(value.c_str(), 0)
            : c == '#' ? ProcessKeyword(value.c_str(), 1)
                       : string(1, c == '|' ? '\0' : c);
  }
  return text;
}

string everyByte() {
  string bytes;
  for (int byte = 1; byte < 256; ++byte) {
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

/// Values that have every byte between two letters.
Strings valuesOfEveryByte() {
  Strings values;
  for (const char byte : everyByte()) {
    if (static_cast<unsigned char>(byte) % 5 == 1) {
      values.emplace_back("x");
    }
    (values.back() += byte) += 'x';
  }
  return values;
}

/// Each would write /tmp/ran where a shell took it for more than text.
// clang-format off
const Strings kShapes = {
  "$(>/tmp/ran)", "`>/tmp/ran`", ";>/tmp/ran;", "|touch /tmp/ran|", "&&touch /tmp/ran&",
  "\n>/tmp/ran\n", "\">/tmp/ran;\"", "\\\";>/tmp/ran\\", "-o/tmp/ran", "--config /tmp/ran",
  "@/etc/passwd", "{a,b}[1-3]*?~", "$HOME ${IFS} $0 %s%n %41", "x #", "\\", " ", "'",
  "'; >/tmp/ran; '", "'$(>/tmp/ran)'", "\\';>/tmp/ran;\\'", "'\n>/tmp/ran\n'", "' -o /tmp/ran '",
  everyByte()};
// clang-format on

/// A way from a value into addresses. Those without it are always fetched, the others unless it has
/// a single quote.
struct Way {
  const char* function;
  const char* what;
  const char* endedBy;  // bytes that would end the value where it stands
  string page;
  Strings addresses;
};

const string kMain = "https://www.imdb.com";
const string kAkas = "https://akas.imdb.com";
const string kFind = kMain + "/find?ref_=nv_sr_fn&q=";
const string kShow = "/?ref_=fn_tv_tt_1";
const string kSeason = "/episodes?season=2&ref_=tt_eps_sn_1";
const string kRow =
    "<td class=\"primary_photo\"><a href=\"/title/%/?\"></td><td "
    "class=\"result_text\"><a>t</a></td>"
    "</tr>";
const string kSummary =
    "</table><div class=\"summary_text\" itemprop=\"description\"><a href=\"\">See full summary</a>"
    "</div>";
const string kTable = "<table class=\"findList\">";

// clang-format off
const Way kWays[] = {
  {"imdbBasicGetMovies", "%", "", "", {kFind + "%&s=tt"}},
  {"imdbGetMovies", "%", "", "",
   {kAkas + "/search/title?at=0&sort=moviemeter,asc&start=1&title=%"
    "&title_type=feature,video,short"}},
  {"velPrintSearchMovie", "%", "'", "", {kFind + "#&s=tt"}},
  {"velPrintSearchTVShows", "%", "'", "", {kMain + "/find?q=#&s=tt&ttype=tv&ref_=fn_tv"}},
  {"imdbGetMovieInfo", "%", "", "", {kAkas + "/title/%/combined"}},
  {"velGetTVShowByID", "%", "", "", {kMain + "/title/%" + kShow}},
  {"velGetTVEpisode", "%", "", "", {kMain + "/title/%" + kSeason}},
  {"imdbBasicGetMovies", "k", "/", kTable + kRow + kSummary,
   {kFind + "k&s=tt", kMain + "/title/^/?ref_=fn_tt_tt_1", kMain + "/title/^/plotsummary"}},
  {"imdbGetMovieInfo", "tt1", "\"", "<div class=\"photo\"><a name=\"poster\" href=\"/%\"></a></div>",
   {kAkas + "/title/tt1/combined", kAkas + "/%/"}},
  {"velGetTVShowByID", "tt1", "\"", "<div class=\"mediastrip\"><a href=\"/%\"></a></div>",
   {kMain + "/title/tt1" + kShow, kMain + "/%"}},
  {"velGetTVEpisode", "tt1", "\"",
   "<h3 id=\"episode_top\"  itemprop=\"name\"><div class=\"image\"><div data-const=\"%\">S2, Ep1"
   "<div class=\"info\"><hr>",
   {kMain + "/title/tt1" + kSeason, kMain + "/title/%" + kShow}},
};
// clang-format on

class Injection : public testing::Test {
 protected:
  void SetUp() override {
    test::removeRegistry();
    std::remove("/sbin/curl");
    ASSERT_EQ(symlink(QUILP_STAND_IN, "/sbin/curl"), 0);
    test::writeFile(string(kPage) + ".json", "{}");
  }
  void TearDown() override { EXPECT_NE(access("/tmp/ran", F_OK), 0); }

  static void expectArrival(const Way& way, const string& value) {
    test::writeFile(kPage, filled(way.page, value));
    Strings expected;
    for (const string& address : way.addresses) {
      if (value.find('\'') == string::npos || address.find_first_of("%^#") == string::npos) {
        expected.push_back(filled(address, value));
      }
    }
    const string what = filled(way.what, value);
    EXPECT_EQ(addressesFetchedBy([&] {
                ask(way.function, {what.c_str(), 1});
              }),
              expected)
        << way.function << ": " << value;
  }
};

TEST_F(Injection, PageAddressesArriveWholeOrAreNotFetched) {
  for (const Way& way : kWays) {
    for (const string& shape : kShapes) {
      expectArrival(way, "a" + withoutBytes(shape, way.endedBy));
      expectArrival(way, "a" + withoutBytes(shape, string("'") + way.endedBy));
    }
  }
}

TEST_F(Injection, EveryByteArrivesInPageAddresses) {
  string rows;
  Strings expected = {kFind + "k&s=tt"};
  for (const string& value : valuesOfEveryByte()) {
    const string id = withoutBytes(value, "'/");
    expectArrival(kWays[0], id);
    rows += filled(kRow, id);
    expected.push_back(kMain + "/title/" + id + "/?ref_=fn_tt_tt_1");
    expected.push_back(kMain + "/title/" + id + "/plotsummary");
  }
  test::writeFile(kPage, kTable + rows + kSummary);
  EXPECT_THAT(addressesFetchedBy([] {
                ask("imdbBasicGetMovies", {"k", 200});
              }),
              testing::UnorderedElementsAreArray(expected));
}

TEST_F(Injection, MusicAddressesArriveWhole) {
  const string key = "?api_key=0f1e2d3c4b5a69788796a5b4c3d2e1f0";
  const string services = "https://musicbrainz.org/ws/2/";
  const string artwork = "https://webservice.fanart.tv/v3/music/";
  Strings values = valuesOfEveryByte();
  values.insert(values.end(), kShapes.begin(), kShapes.end());
  for (const string& v : values) {  // names, and identifiers out of documents
    const string id = "id=\"" + inAttribute(v) + '"';
    test::writeFile(string(kPage) + ".xml",
                    "<metadata><artist-list><artist " + id +
                        "/></artist-list><release-group-list><release-group " + id +
                        " type=\"Album\"/></release-group-list></metadata>");
    const string phrase = '"' + inQuery(v) + '"';
    const string artist = services + "artist/?query=" + phrase;
    EXPECT_EQ(addressesFetchedBy([&] {
                ask("velSearchAlbum", {v.c_str(), 1, v.c_str()});
              }),
              (Strings{services + "release-group/?query=" + phrase + "+and+artist:" + phrase +
                           "&type=album",
                       artwork + "albums/" + v + key}));
    EXPECT_EQ(addressesFetchedBy([&] {
                ask("velGetArtistThumbnail", {v.c_str(), 1});
              }),
              (Strings{artist, artwork + v + key}));
    EXPECT_EQ(addressesFetchedBy([&] {
                ask("velGetAlbumByArtist", {v.c_str(), 1});
              }),
              (Strings{artist, services + "release-group?artist=" + inQuery(v) + "&type=album",
                       artwork + "albums/" + v + key}));
  }
}

TEST_F(Injection, TheRealCurlIsAllThatIsStarted) {
  std::remove("/sbin/curl");
  ASSERT_EQ(symlink("/usr/bin/curl", "/sbin/curl"), 0);
  test::newSiteRequests();
  std::size_t fetches = 0;
  for (const Program& program : programsStartedBy([] {
         ask("imdbBasicGetMovies", {"everything", 2});
         ask("velGetTVShowByID", {"tt8000004"});               // a picture's address with a command
         ask("velSearchAlbum", {"knotted rope", 1, "curly"});  // an identifier with several
       })) {
    EXPECT_THAT(program.file, testing::AnyOf("/usr/bin/dash", "/usr/bin/rm", "/usr/bin/curl"));
    fetches += program.file == "/usr/bin/curl" ? 1 : 0;
  }
  EXPECT_EQ(test::newSiteRequests().size(), fetches);
  EXPECT_EQ(fetches, 8U);
}

class AddOn : public Injection {
 protected:
  /// The add-on is the only program, and these its arguments but for "-o FILE".
  static void expectArguments(const string& function, const Asked& asked, const string& expected,
                              const string& shell = kAddOn) {
    unlink(shell.c_str());
    ASSERT_EQ(symlink(QUILP_STAND_IN, shell.c_str()), 0);
    test::registerAddOn(test::lookup(function).type, '"' + shell + '"');
    const auto programs = programsStartedBy([&] { ask(function, asked); });
    ASSERT_EQ(programs.size(), 1U);
    EXPECT_EQ(programs[0].file, QUILP_STAND_IN);
    const Strings& arguments = programs[0].arguments;
    ASSERT_GT(arguments.size(), 3U);
    EXPECT_EQ(arguments[0], shell);
    EXPECT_EQ(arguments.end()[-2], "-o");
    string all;
    for (std::size_t i = 1; i + 2 < arguments.size(); ++i) {
      all += string(i > 1 ? 1 : 0, '\0') + arguments[i];
    }
    EXPECT_EQ(all, expected);
  }
};

TEST_F(AddOn, GetsValuesAsTheyAre) {
  const char* const ways[][3] = {
      {"velGetKTVInfo", "", "getKTVInfo|-f|%"},
      {"velPrintSearchMovie", "", "searchmovie|-t|~|-n|2"},
      {"velPrintMovieByID", "abcde", "getmovieinfobyid|-i|%"},
      {"velPrintSearchTVShows", "", "searchtvshow|-t|~|-n|2|-l|%"},
      {"velGetTVEpisode", "abcde", "gettvshowinfo|-i|%|-s|2|-e|1|-l|%"},
      {"velSearchAlbum", "", "searchAlbum|-b|%|-a|%|-n|2"},
  };
  Strings values = kShapes;
  for (const char byte : everyByte()) {
    values.push_back(byte + string("x") + byte);
  }
  for (const auto& [function, prefix, arguments] : ways) {
    for (const string& v : values) {
      const string what = prefix + v;
      expectArguments(function, {what.c_str(), 2, v.c_str(), v.c_str()}, filled(arguments, v));
    }
  }
}

TEST_F(AddOn, ItsPathAndLanguageComeFromFilesAsTheyAre) {
  for (const string name :
       {"a b", "a'b'", "$(x)", "`x`", "a;b", "a|b&c", "*{b,c}?", "-o", "a\\b"}) {
    test::writeFile("/etc/config/catalox.conf", "[" + name + "]\nLANG=\"" + name + "\"\n");
    expectArguments("velPrintTVShowByID", {"abcde1", 0, "", nullptr},
                    filled("gettvshowinfo|-i|1|-l|", "") + name.substr(0, 3),
                    "/etc/config/" + name);
  }
}

}  // namespace
