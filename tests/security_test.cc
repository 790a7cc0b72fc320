// What comes from a page, a document, the registry or a caller reaches curl and the add-on byte for
// byte, and is no command.

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

/// The programs that the call starts in the place of curl and of add-ons: their paths and
/// arguments. A shell that has something to say is a failure.
std::vector<Strings> programsStartedBy(const std::function<void()>& call) {
  std::remove("/etc/config/asked");
  EXPECT_EQ(test::standardErrorOf(call).find("sh: "), string::npos);
  const string log = test::readFile("/etc/config/asked");
  std::size_t at = 0;
  const auto next = [&] {
    const string text = log.c_str() + at;
    at += text.size() + 1;
    return text;
  };
  std::vector<Strings> programs;
  while (at < log.size()) {
    programs.push_back({next()});
    for (int n = std::stoi(next()); n > 0; --n) {
      programs.back().push_back(next());
    }
  }
  return programs;
}

/// The addresses that curl is called with. What else it is given must be what the library says to
/// it.
Strings addressesFetchedBy(const std::function<void()>& call) {
  static const Strings known = {"-g", "-s",         "-L", "-A", "Mozilla/5.0", "--connect-timeout",
                                "15", "--max-time", "25", "-D", "-o",          "/sbin/curl"};
  Strings addresses;
  for (const Strings& program : programsStartedBy(call)) {
    for (const string& word : program) {
      if (std::count(known.begin(), known.end(), word) == 0 && word.find("/tmp/libquilp.") != 0 &&
          word.find("/var/tmp/") != 0) {
        addresses.push_back(word);
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
    ASSERT_EQ(symlink(QUILP_TESTS "/curl.sh", "/sbin/curl"), 0);
    test::writeFile(string(kPage) + ".json", "{}");
    test::writeFile(kPage, "");
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
  string forbidden;  // in documents
  for (char c = 1; c < ' '; ++c) {
    forbidden += c == '\t' || c == '\n' || c == '\r' ? "" : string(1, c);
  }
  for (const string& v : values) {  // names, and identifiers out of documents
    const string held = withoutBytes(v, forbidden);
    const string id = "id=\"" + inAttribute(held) + '"';
    test::writeFile(string(kPage) + ".xml",
                    "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"
                    "<metadata><artist-list><artist " +
                        id + "/></artist-list><release-group-list><release-group " + id +
                        " type=\"Album\"/></release-group-list></metadata>");
    const string phrase = '"' + inQuery(v) + '"';
    const string artist = services + "artist/?query=" + phrase;
    EXPECT_EQ(addressesFetchedBy([&] {
                ask("velSearchAlbum", {v.c_str(), 1, v.c_str()});
              }),
              (Strings{services + "release-group/?query=" + phrase + "+and+artist:" + phrase +
                           "&type=album",
                       artwork + "albums/" + held + key}));
    EXPECT_EQ(addressesFetchedBy([&] {
                ask("velGetArtistThumbnail", {v.c_str(), 1});
              }),
              (Strings{artist, artwork + held + key}));
    EXPECT_EQ(addressesFetchedBy([&] {
                ask("velGetAlbumByArtist", {v.c_str(), 1});
              }),
              (Strings{artist, services + "release-group?artist=" + inQuery(held) + "&type=album",
                       artwork + "albums/" + held + key}));
  }
}

class AddOn : public Injection {
 protected:
  /// The add-on is the only program, and these its arguments but for "-o FILE".
  static void expectArguments(const string& function, const Asked& asked, const string& expected,
                              const string& shell = kAddOn) {
    unlink(shell.c_str());
    ASSERT_EQ(symlink(QUILP_TESTS "/curl.sh", shell.c_str()), 0);
    test::registerAddOn(test::lookup(function).type, '"' + shell + '"');
    const auto programs = programsStartedBy([&] { ask(function, asked); });
    ASSERT_EQ(programs.size(), 1U);
    ASSERT_GT(programs[0].size(), 3U);
    EXPECT_EQ(programs[0][0], shell);
    EXPECT_EQ(programs[0].end()[-2], "-o");
    string all;
    for (std::size_t i = 1; i + 2 < programs[0].size(); ++i) {
      all += string(i > 1 ? 1 : 0, '\0') + programs[0][i];
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
