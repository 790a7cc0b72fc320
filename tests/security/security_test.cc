// What comes from a page, a document, the registry or a caller reaches the client and the add-on
// byte for byte, and starts no other program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "libquilp.h"
#include "programs.h"
#include "support.h"

namespace {

using std::string;
using test::addressesFetchedBy;
using test::Program;
using test::programsStartedBy;
using Strings = std::vector<string>;

constexpr char kAddOn[] = "/etc/config/add-on";
constexpr char kPage[] = "/etc/config/page";

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

string everyByte() {
  string bytes;
  for (int byte = 1; byte < 256; ++byte) {
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

/// Each would write /tmp/ran where a shell took it for more than text.
const Strings& shapes() {
  static const Strings shapes = {"$(>/tmp/ran)",
                                 "`>/tmp/ran`",
                                 ";>/tmp/ran;",
                                 "|touch /tmp/ran|",
                                 "&&touch /tmp/ran&",
                                 "\n>/tmp/ran\n",
                                 "\">/tmp/ran;\"",
                                 "\\\";>/tmp/ran\\",
                                 "-o/tmp/ran",
                                 "--config /tmp/ran",
                                 "@/etc/passwd",
                                 "{a,b}[1-3]*?~",
                                 "$HOME ${IFS} $0 %s%n %41",
                                 "x #",
                                 "\\",
                                 " ",
                                 everyByte()};
  return shapes;
}

const Strings& quotedShapes() {
  static const Strings shapes = {"'",
                                 "'; >/tmp/ran; '",
                                 "'$(>/tmp/ran)'",
                                 "\\';>/tmp/ran;\\'",
                                 "'\n>/tmp/ran\n'",
                                 "' -o /tmp/ran '"};
  return shapes;
}

/// A way from a value into addresses.
struct Way {
  const char* name;
  const char* endedBy;  // bytes that would end the value where it stands
  std::function<string(const string&)> page;
  std::function<void(const string&)> call;
  Strings before;  // addresses without it
  std::function<Strings(const string&)> addresses;
};

const char kSite[] = "https://www.imdb.com";
const char kAkas[] = "https://akas.imdb.com";

string none(const string&) { return ""; }

void searchMovies(const string& keyword, int count) {
  velMovie_* movies = nullptr;
  velFreeMovies(movies, imdbBasicGetMovies(keyword.c_str(), count, &movies));
}

void getMovie(const string& id) {
  velMovieInfo_ info = {};
  imdbGetMovieInfo(id.c_str(), &info);
  velFreeMovieInfo(&info);
}

void getShow(const string& id) {
  velTVShowInfo info = {};
  velGetTVShowByID(id.c_str(), "en", &info);
  velFreeTVShowInfo(&info);
}

void getEpisode(const string& id) {
  velTVEpisode info = {};
  velGetTVEpisode(id.c_str(), 1, 2, "en", &info);
  velFreeTVEpisode(&info);
}

void searchAlbum(const string& album, const string& artist) {
  velAlbum_* albums = nullptr;
  velFreeAlbums(albums, velSearchAlbum(album.c_str(), artist.c_str(), 1, &albums));
}

string titlePage(const string& id) { return string(kSite) + "/title/" + id + "/?ref_=fn_tt_tt_1"; }

string rowOf(const string& id) {
  return "<td class=\"primary_photo\"><a href=\"/title/" + id +
         "/?\"></td><td class=\"result_text\"><a>t</a></td></tr>";
}

const string kSummary =
    "<div class=\"summary_text\" itemprop=\"description\"><a href=\"\">See full summary</a></div>";

const std::vector<Way>& ways() {
  static const string show = string(kSite) + "/title/tt1/?ref_=";
  static const string episodes = string(kSite) + "/title/tt1/episodes?season=1&ref_=tt_eps_sn_1";
  static const string shows = "fn_tv_tt_1";
  static const std::vector<Way> ways = {
      {"keyword",
       "",
       none,
       [](const string& v) { searchMovies(v, 1); },
       {},
       [](const string& v) { return Strings{kSite + ("/find?ref_=nv_sr_fn&q=" + v) + "&s=tt"}; }},
      {"keyword of the alternate search",
       "",
       none,
       [](const string& v) {
         velMovie_* movies = nullptr;
         velFreeMovies(movies, imdbGetMovies(v.c_str(), 1, &movies));
       },
       {},
       [](const string& v) {
         return Strings{kAkas + ("/search/title?at=0&sort=moviemeter,asc&start=1&title=" + v) +
                        "&title_type=feature,video,short"};
       }},
      {"release name",
       "'",
       none,
       [](const string& v) { velPrintSearchMovie(v.c_str(), 1); },
       {},
       [](const string& v) {
         return Strings{kSite + ("/find?ref_=nv_sr_fn&q=" + ProcessKeyword(v.c_str(), 1)) +
                        "&s=tt"};
       }},
      {"release name of a show",
       "'",
       none,
       [](const string& v) { velPrintSearchTVShows(v.c_str(), 1, "en"); },
       {},
       [](const string& v) {
         return Strings{kSite + ("/find?q=" + ProcessKeyword(v.c_str(), 1)) +
                        "&s=tt&ttype=tv&ref_=fn_tv"};
       }},
      {"movie",
       "",
       none,
       getMovie,
       {},
       [](const string& v) { return Strings{kAkas + ("/title/" + v) + "/combined"}; }},
      {"show",
       "",
       none,
       getShow,
       {},
       [](const string& v) { return Strings{kSite + ("/title/" + v) + "/?ref_=" + shows}; }},
      {"show of an episode",
       "",
       none,
       getEpisode,
       {},
       [](const string& v) {
         return Strings{kSite + ("/title/" + v) + "/episodes?season=1&ref_=tt_eps_sn_1"};
       }},
      {"result row and its plot summary",
       "/",
       [](const string& v) {
         return "<table class=\"findList\">" + rowOf(v) + "</table>" + kSummary;
       },
       [](const string&) { searchMovies("k", 1); },
       {string(kSite) + "/find?ref_=nv_sr_fn&q=k&s=tt"},
       [](const string& v) {
         const string id = v.substr(0, 63);
         return Strings{titlePage(id), kSite + ("/title/" + id) + "/plotsummary"};
       }},
      {"photo page",
       "\"",
       [](const string& v) {
         return "<div class=\"photo\"><a name=\"poster\" href=\"/" + v + "\"></a></div>";
       },
       [](const string&) { getMovie("tt1"); },
       {string(kAkas) + "/title/tt1/combined"},
       [](const string& v) { return Strings{kAkas + ("/" + v) + "/"}; }},
      {"banner page",
       "\"",
       [](const string& v) {
         return "<div class=\"mediastrip\"><a href=\"/" + v + "\"></a></div>";
       },
       [](const string&) { getShow("tt1"); },
       {show + shows},
       [](const string& v) { return Strings{kSite + ("/" + v)}; }},
      {"episode",
       "\"",
       [](const string& v) {
         return "<h3 id=\"episode_top\"  itemprop=\"name\"><div class=\"image\"><div "
                "data-const=\"" +
                v + "\">S1, Ep2<div class=\"info\"><hr>";
       },
       [](const string&) { getEpisode("tt1"); },
       {episodes},
       [](const string& v) { return Strings{kSite + ("/title/" + v) + "/?ref_=" + shows}; }},
  };
  return ways;
}

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
    test::writeFile(kPage, way.page(value));
    Strings expected = way.before;
    if (value.find('\'') == string::npos) {
      const Strings more = way.addresses(value);
      expected.insert(expected.end(), more.begin(), more.end());
    }
    EXPECT_EQ(addressesFetchedBy([&] { way.call(value); }), expected) << way.name << ": " << value;
  }
};

TEST_F(Injection, PageAddressesArriveWholeOrAreNotFetched) {
  for (const Way& way : ways()) {
    for (const string& shape : shapes()) {
      expectArrival(way, "a" + withoutBytes(shape, string("'") + way.endedBy));
    }
    for (const string& shape : quotedShapes()) {
      expectArrival(way, withoutBytes(shape, way.endedBy));
    }
  }
}

/// Values that have every byte between two letters.
Strings valuesOfEveryByte() {
  Strings values;
  for (int byte = 1; byte < 256; ++byte) {
    if (byte % 5 == 1) {
      values.emplace_back("x");
    }
    (values.back() += static_cast<char>(byte)) += 'x';
  }
  return values;
}

TEST_F(Injection, EveryByteArrivesInPageAddresses) {
  const string find = string(kSite) + "/find?ref_=nv_sr_fn&q=k&s=tt";
  string rows;
  Strings expected = {find};
  for (const string& value : valuesOfEveryByte()) {
    const string id = withoutBytes(value, "'/");
    expectArrival(ways().front(), id);
    rows += rowOf(id);
    expected.push_back(titlePage(id));
    expected.push_back(kSite + ("/title/" + id) + "/plotsummary");
  }
  test::writeFile(kPage, "<table class=\"findList\">" + rows + "</table>" + kSummary);
  EXPECT_THAT(addressesFetchedBy([&] { searchMovies("k", static_cast<int>(expected.size())); }),
              testing::UnorderedElementsAreArray(expected));
}

/// All that reaches the music services: names, and identifiers out of documents.
void expectMusic(const string& v) {
  const string key = "?api_key=0f1e2d3c4b5a69788796a5b4c3d2e1f0";
  const string services = "https://musicbrainz.org/ws/2/";
  const string id = inAttribute(v);
  test::writeFile(string(kPage) + ".xml",
                  "<metadata><artist-list><artist id=\"" + id +
                      "\"/></artist-list><release-group-list><release-group id=\"" + id +
                      "\" type=\"Album\"/></release-group-list></metadata>");
  const string phrase = '"' + inQuery(v) + '"';
  const string artist = services + "artist/?query=" + phrase;
  const string artwork = "https://webservice.fanart.tv/v3/music/";
  EXPECT_EQ(addressesFetchedBy([&] { searchAlbum(v, v); }),
            (Strings{services + "release-group/?query=" + phrase + "+and+artist:" + phrase +
                         "&type=album",
                     artwork + "albums/" + v + key}));
  EXPECT_EQ(addressesFetchedBy([&] {
              velThumb_* thumbs = nullptr;
              velFreeThumbs(thumbs, velGetArtistThumbnail(v.c_str(), 1, &thumbs));
            }),
            (Strings{artist, artwork + v + key}));
}

TEST_F(Injection, MusicAddressesArriveWhole) {
  for (const Strings& list : {shapes(), quotedShapes()}) {
    for (const string& shape : list) {
      expectMusic(shape);
    }
  }
  for (const string& value : valuesOfEveryByte()) {
    expectMusic(value);
  }
  test::writeFile(string(kPage) + ".xml",
                  "<metadata><artist-list><artist id=\"'&quot;$(x)\"/></artist-list></metadata>");
  EXPECT_EQ(
      addressesFetchedBy([] { velPrintGetAlbumByArtist("a", 1); }).back(),
      "https://musicbrainz.org/ws/2/release-group?artist=" + inQuery("'\"$(x)") + "&type=album");
}

TEST_F(Injection, TheRealClientIsAllThatIsStarted) {
  std::remove("/sbin/curl");
  ASSERT_EQ(symlink("/usr/bin/curl", "/sbin/curl"), 0);
  test::newSiteRequests();
  std::size_t clients = 0;
  for (const Program& program : programsStartedBy([] {
         searchMovies("everything", 2);
         getShow("tt8000004");                  // a picture's address with a command
         searchAlbum("knotted rope", "curly");  // an identifier with several
       })) {
    EXPECT_THAT(program.file, testing::AnyOf("/usr/bin/dash", "/usr/bin/rm", "/usr/bin/curl"));
    clients += program.file == "/usr/bin/curl" ? 1 : 0;
  }
  EXPECT_EQ(test::newSiteRequests().size(), clients);
  EXPECT_EQ(clients, 8U);
}

class AddOn : public Injection {
 protected:
  /// The add-on is the only program, and these its arguments but for "-o FILE".
  static void expectArguments(const Strings& expected, const std::function<void()>& call,
                              const string& shell = kAddOn) {
    const auto programs = programsStartedBy(call);
    ASSERT_EQ(programs.size(), 1U);
    EXPECT_EQ(programs[0].file, QUILP_STAND_IN);
    Strings arguments = programs[0].arguments;
    ASSERT_GT(arguments.size(), 3U);
    EXPECT_EQ(arguments[0], shell);
    EXPECT_EQ(arguments.end()[-2], "-o");
    EXPECT_EQ(Strings(arguments.begin() + 1, arguments.end() - 2), expected);
  }

  static void use(const char* type) {
    unlink(kAddOn);
    ASSERT_EQ(symlink(QUILP_STAND_IN, kAddOn), 0);
    test::registerAddOn(type, kAddOn);
  }
};

TEST_F(AddOn, GetsValuesAsTheyAre) {
  Strings values = shapes();
  values.insert(values.end(), quotedShapes().begin(), quotedShapes().end());
  use("KTV");
  for (const char byte : everyByte()) {
    const string path = byte + string("x") + byte;
    KTV_ExtraData_t info = {};
    expectArguments({"getKTVInfo", "-f", path}, [&] { velGetKTVInfo(path.c_str(), &info); });
  }
  for (const string& v : values) {
    KTV_ExtraData_t info = {};
    use("KTV");
    expectArguments({"getKTVInfo", "-f", v}, [&] { velGetKTVInfo(v.c_str(), &info); });
    use("Movie");
    expectArguments({"searchmovie", "-t", ProcessKeyword(v.c_str(), 0), "-n", "1"},
                    [&] { velPrintSearchMovie(v.c_str(), 1); });
    expectArguments({"getmovieinfobyid", "-i", v},
                    [&] { velPrintMovieByID(("abcde" + v).c_str()); });
    use("TV");
    expectArguments({"searchtvshow", "-t", ProcessKeyword(v.c_str(), 0), "-n", "1", "-l", v},
                    [&] { velPrintSearchTVShows(v.c_str(), 1, v.c_str()); });
    expectArguments({"gettvshowinfo", "-i", v, "-s", "1", "-e", "2", "-l", "en"},
                    [&] { getEpisode("abcde" + v); });
    use("Music");
    expectArguments({"searchAlbum", "-b", v, "-a", v, "-n", "1"}, [&] { searchAlbum(v, v); });
  }
}

TEST_F(AddOn, ItsPathAndLanguageComeFromFilesAsTheyAre) {
  for (const string name :
       {"a b", "a'b'", "$(x)", "`x`", "a;b", "a|b&c", "*{b,c}?", "-o", "a\\b"}) {
    const string shell = "/etc/config/" + name;
    unlink(shell.c_str());
    ASSERT_EQ(symlink(QUILP_STAND_IN, shell.c_str()), 0);
    test::registerAddOn("TV", '"' + shell + '"');
    test::writeFile("/etc/config/catalox.conf", "[" + name + "]\nLANG=\"" + name + "\"\n");
    expectArguments(
        {"gettvshowinfo", "-i", "1", "-l", name.substr(0, 3)},
        [] { velPrintTVShowByID("abcde1", nullptr); }, shell);
  }
}

}  // namespace
