#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <json/reader.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "libquilp.h"
#include "support.h"

namespace {

using std::string;
using testing::ElementsAre;
using testing::MatchesRegex;

/// "TITLE|LANGUAGE TRACK|NAME:GENDER;…|WORDS;…"
string described(const KTV_ExtraData_t& info) {
  std::ostringstream text;
  text << info.title << '|' << info.language << ' ' << info.audioTrack << '|';
  for (const ArtistData_t& artist : info.artists) {
    text << artist.name << ':' << artist.gender << ';';
    EXPECT_EQ(artist.nationality, 0);
    EXPECT_TRUE(artist.patterns.empty());
  }
  text << '|';
  for (const TitleSearchPattern_t& pattern : info.titlePatterns) {
    text << pattern.wordCount << ';';
    EXPECT_EQ(pattern.text, info.title);
    EXPECT_EQ(pattern.kind, 1);
  }
  return text.str();
}

string fromName(const string& name) {
  KTV_ExtraData_t info;
  initKTVInfo(&info);
  EXPECT_EQ(BasicGetKTVInfo(name.c_str(), &info), 0);
  return described(info);
}

template <class Parse>
KTV_ExtraData_t parsed(Parse parse, const string& text) {
  KTV_ExtraData_t info;
  initKTVInfo(&info);
  // Exactly as long as the text, so that a sanitizer sees a look beyond its end.
  const auto exact = std::make_unique<unsigned char[]>(text.size() + 1);
  std::copy(text.begin(), text.end(), exact.get());
  EXPECT_EQ(parse(exact.get(), &info), 0);
  return info;
}

// A suite of this name is run first, so that no lookup has been made when its process is forked.
TEST(KaraokeTablesDeathTest, LanguageLengthsAreFilledOnceByTheFirstLookup) {
  const auto filled = [] {
    int sum = 0;
    for (const KaraokeLanguageEntry* row = g_LanguageCode; row->code > 0; ++row) {
      sum += row->length1 + row->length2 + row->length3;
    }
    return sum;
  };
  EXPECT_EXIT(
      {
        bool right = filled() == 0;
        std::atomic<bool> start{false};
        std::atomic<int> sum{0};
        std::vector<std::thread> threads;
        threads.reserve(8);
        for (int i = 0; i < 8; ++i) {
          threads.emplace_back([&] {
            while (!start) {
            }
            KTV_ExtraData_t info;
            BasicGetKTVInfo("x[閩][闽].mkv", &info);
            sum += filled() * (info.language == 3 ? 1 : 100);
          });
        }
        start = true;
        for (std::thread& thread : threads) {
          thread.join();
        }
        right = right && sum == 8 * (8 * 10 + 6 * 3 + 5 + 4);
        right = right && g_LanguageCode[6].length1 == 5 && g_LanguageCode[0].length2 == 5;
        std::exit(right ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

TEST(KaraokeTables, HoldTheStandardsCountriesInOrder) {
  std::ifstream file("/usr/share/iso-codes/json/iso_3166-1.json");
  Json::Value standard;
  ASSERT_TRUE(Json::parseFromStream(Json::CharReaderBuilder(), file, &standard, nullptr))
      << "iso-codes is missing";
  std::map<string, std::pair<string, int>> codes;
  for (const Json::Value& country : standard["3166-1"]) {
    codes[country["alpha_2"].asString()] = {country["alpha_3"].asString(),
                                            std::stoi(country["numeric"].asString())};
  }
  std::istringstream order(
      "AF AX AL DZ AS AD AO AI AQ AG AR AM AW AU AT AZ BS BH BD BB BY BE BZ BJ BM BT BO BQ BA "
      "BW BV BR IO BN BG BF BI KH CM CA CV KY CF TD CL CN CX CC CO KM CG CD CK CR CI HR CU CW "
      "CY CZ DK DJ DM DO EC EG SV GQ ER EE ET FK FO FJ FI FR GF PF TF GA GM GE DE GH GI GR GL "
      "GD GP GU GT GG GN GW GY HT HM HN HK HU IS IN ID IR IQ IE IM IL IT JM JP JE JO KZ KE KI "
      "KP KR KW KG LA LV LB LS LR LY LI LT LU MO MK MG MW MY MV ML MT MH MQ MR MU YT MX FM MD "
      "MC MN ME MS MA MZ MM NA NR NP NL NC NZ NI NE NG NU NF MP NO OM PK PW PS PA PG PY PE PH "
      "PN PL PT PR QA RE RO RU RW BL SH KN LC MF PM VC WS SM ST SA SN RS SC SL SG SX SK SI SB "
      "SO ZA GS SS ES LK SD SR SJ SZ SE CH SY TW TJ TZ TH TL TG TK TO TT TN TR TM TC TV UG UA "
      "AE GB UM US UY UZ VU VA VE VN VG VI WF EH YE ZM ZW ");
  const CountryEntry* row = g_CountryCode;
  string last;
  for (string alpha2; order >> alpha2; ++row) {
    ASSERT_EQ(row->alpha2, alpha2);
    EXPECT_EQ(std::make_pair(string(row->alpha3), row->numeric), codes[alpha2]) << alpha2;
    EXPECT_LT(last, row->name);
    last = row->name;
  }
  EXPECT_EQ(row - g_CountryCode, 249);
  EXPECT_TRUE(row->alpha2 == nullptr && row->alpha3 == nullptr && row->name == nullptr);
  EXPECT_EQ(row->numeric, 0);

  const std::map<string, string> telling = {
      {"AX", "Aland"},
      {"BQ", "Bonaire, Sint Eustatiusand Saba"},
      {"IO", "British Indian OceanTerritory"},
      {"CG", "Congo (Brazzaville)"},
      {"CD", "Congo (Kinshasa)"},
      {"CI", "Cote d'Ivoire"},
      {"KP", "Korea, North"},
      {"KR", "Korea, South"},
      {"VC", "Saint Vincent and theGrenadines"},
      {"GS", "South Georgia and SouthSandwich Islands"},
      {"SJ", "Svalbard and Jan MayenIslands"},
      {"TW", "Taiwan"},
      {"UM", "United States MinorOutlying Islands"},
      {"US", "United States of America"},
      {"VG", "Virgin Islands, British"},
  };
  std::size_t met = 0;
  for (row = g_CountryCode; row->alpha2 != nullptr; ++row) {
    if (const auto name = telling.find(row->alpha2); name != telling.end()) {
      EXPECT_EQ(row->name, name->second);
      ++met;
    }
  }
  EXPECT_EQ(met, telling.size());
}

TEST(KaraokeName, IsReadAsCallersWereBuiltOn) {
  const std::array<string, 2> cases[] = {
      // Where the parts end.
      {"A[M]+B[F]_Song[國][L].mkv", "Song|1 1|A:1;B:2;|1;"},
      {"Song[E].mp4", "Song|4 -1||1;"},
      {"_Song.mp4", "Song|-1 -1||1;"},
      {"A_Song.live.mkv", "Song.live|-1 -1|A:0;|1;"},
      {"A_b_c", "b_c|-1 -1|A:0;|2;"},
      {"__a_", "_a_|-1 -1||1;"},
      {"A_", "|-1 -1|A:0;|"},
      {"", "|-1 -1||"},
      {".mkv", "|-1 -1||"},
      {"A[.x]_Song", "A|0 0||1;"},
      // Titles and markers.
      {"Song Title[M][L].mkv", "Song Title|1 1||2;"},
      {"Song[國][R].mkv", "Song|1 2||1;"},
      {"Song[國].mkv", "Song|1 0||1;"},
      {"Song[X].mkv", "Song|0 0||1;"},
      {"Song[X][C][1].mkv", "Song|2 5||1;"},
      {"Song[L][X][M][R].mkv", "Song|1 1||1;"},
      {"Song[T][E].mkv", "Song|3 0||1;"},
      {"Song[THA][0].mkv", "Song|7 4||1;"},
      {"Song[ES]x[S]y.mkv", "Song|8 3||1;"},
      {"Song[m][l].mkv", "Song|0 0||1;"},
      {" Song [J] x.mkv", " Song |5 -1||1;"},
      // Before the title: the rest of a Chinese marker becomes one.
      {"[M]Song.mkv", "Song|1 -1||1;"},
      {"[X]Song.mkv", "X]Song|0 0||1;"},
      {"[國]Song.mkv", "國]Song|1 0||2;"},
      {"[L][國]Song.mkv", "\x8B]Song|1 1||1;"},
      {"[L]x[國]Song.mkv", "x|1 1||1;"},
      {"[M", "M|0 0||1;"},
      {"[[[M]", "|1 0||"},
      {"x[\xE5", "x|0 0||1;"},
      // Artists.
      {"A&B[G]_x", "x|-1 -1|A:0;B:3;|1;"},
      {"A [M] + B_x", "x|-1 -1|A :1; B:0;|1;"},
      {"A[M]B_x", "x|-1 -1|A:1;|1;"},
      {"A[X]+B_x", "x|-1 -1|A:0;B:0;|1;"},
      {"+A_x", "x|-1 -1|A:0;|1;"},
      {"A++&B+_x", "x|-1 -1|A:0;B:0;|1;"},
      {"A＋B＆C_x", "x|-1 -1|A:0;B:0;C:0;|1;"},
      {"[F]A+B_x", "x|-1 -1|B:0;|1;"},
      {"A+[F]B＆[M+C[F_x", "x|-1 -1|A:0;C:0;|1;"},
      {"A\xEF\xBC_x", "x|-1 -1|A\xEF\xBC:0;|1;"},
  };
  for (const auto& [name, expected] : cases) {
    EXPECT_EQ(fromName(name), expected) << name;
  }
}

TEST(KaraokeTitle, CountsWords) {
  const std::pair<string, int> cases[] = {
      {"two words", 2},
      {"夜航船", 3},
      {"a青", 2},
      {"a青b", 3},
      {"rock'n'roll", 1},
      {"_a_b", 2},
      {"...", 0},
      {"...a", 1},
      {"a\x80\xBF", 1},
      {"\x80 1", 1},
      {"é", 1},
      // A lead byte takes as many bytes with it as it announces, but not behind a Latin word.
      {"\xE5xy z", 2},
      {"x\xE5xy z", 4},
      {"\xE0xy", 2},
      {"\xF0xyz", 1},
      // No look beyond the end.
      {string(40, '.') + "\xF0", 1},
      {string(40, '.') + "\xE5\x9C", 1},
      {string(40, 'a'), 1}};
  for (const auto& [title, words] : cases) {
    EXPECT_EQ(parsed(parseTitleAndLangAndVocal, title).titlePatterns.at(0).wordCount, words)
        << title;
  }
}

TEST(KaraokeName, IsCutWhereItsBufferEnds) {
  const string song = "国";
  for (const int size : {1022, 1023, 1024, 1025, 100000}) {
    const string text(static_cast<std::size_t>(size), 'a');
    const string fitting = text.substr(0, 1023);
    EXPECT_EQ(parsed(parseTitleAndLangAndVocal, text + "[M][L]").title, fitting);
    EXPECT_EQ(parsed(parseTitleAndLangAndVocal, text + "[M][L]").audioTrack, 1);
    const auto artists = parsed(parseArtist, text + "[F]+B").artists;
    ASSERT_EQ(artists.size(), 2U);
    EXPECT_EQ(artists[0].name + artists[1].name, fitting + "B");
    EXPECT_EQ(fromName(text), fitting + "|-1 -1||1;");
  }
  EXPECT_EQ(fromName(string(1016, 'a') + "[M].mkv"), string(1016, 'a') + "|1 -1||1;");
  EXPECT_EQ(fromName(string(1016, 'a') + "[M].mkvx"), string(1016, 'a') + "|1 -1||1;");
  // Never inside a character; bytes that are none are cut anywhere.
  EXPECT_EQ(fromName(string(1020, 'a') + song + song), string(1020, 'a') + song + "|-1 -1||2;");
  EXPECT_EQ(fromName(string(1021, 'a') + song), string(1021, 'a') + "|-1 -1||1;");
  EXPECT_EQ(parsed(parseArtist, string(2000, '\x80')).artists.at(0).name.size(), 1023U);
}

/// Names of the grammar, with what must be read from them.
class Grammar {
 public:
  string name;
  string expected;

  explicit Grammar(unsigned seed) : random_(seed) {
    string artists;
    const string artistPart = addArtists(artists);
    int words = 0;
    const string title = addTitle(words);
    const string markers = addMarkers();
    name = artistPart + "_" + title + markers + any({".mkv", ".m]p[M]4", "."});
    expected = title + '|' + std::to_string(language_) + ' ' + std::to_string(track_) + '|' +
               artists + '|' + std::to_string(words) + ';';
  }

 private:
  std::size_t below(std::size_t n) { return random_() % n; }
  string any(const std::vector<string>& choices) { return choices[below(choices.size())]; }

  string addArtists(string& artists) {
    string part;
    for (std::size_t n = below(4), i = 0; i < n; ++i) {
      part += i > 0 ? any({"+", "&", "＋", "＆"}) : "";
      const string artist = any({"", "A", " Mr. B]", "林小雨", "\xEF", "C-d 5"});
      const std::size_t gender = below(6);
      part += artist;
      if (gender > 0) {
        const string brackets[] = {"[M]", "[F]", "[G]", "[X]", "["};
        part += brackets[gender - 1] + any({"", "x", "[F]", " "});
      }
      if (!artist.empty()) {
        artists += artist + ':' + std::to_string(gender <= 3 ? gender : 0) + ';';
      }
    }
    return part;
  }

  string addTitle(int& words) {
    string title = any({"", " ", "_", "-.", "]"});
    bool latin = false;
    for (words = 1 + static_cast<int>(below(5)); words > 0 && count_ < words; ++count_) {
      const bool isLatin = below(2) == 0;
      title += latin && isLatin ? any({" ", "_", "_-"}) : any({"", " ", "_"});
      title += isLatin ? any({"a", "Don't", "4ever", "U.S.A.", "x+y]"}) : any({"花", "é", "𝄞"});
      latin = isLatin;
    }
    return title + (below(2) == 0 ? " " : "");
  }

  string addMarkers() {
    struct Marker {
      const char* text;
      int language;
      int track;
    };
    static const Marker kMarkers[] = {
        {"[M]", 1, 0},  {"[T]", 3, 0},  {"[THA]", 7, 0}, {"[ES]", 8, 0}, {"[國]", 1, 0},
        {"[粤]", 2, 0}, {"[韩]", 6, 0}, {"[L]", 0, 1},   {"[R]", 0, 2},  {"[1]", 0, 5},
        {"[X]", 0, 0},  {"[]", 0, 0},   {"[Live]", 0, 0}};
    string text;
    for (std::size_t n = below(5); n > 0; --n) {
      const Marker& marker = kMarkers[below(std::size(kMarkers))];
      text += marker.text + any({"", "", "x.", " 花]"});
      const bool languageOpen = language_ <= 0;
      if (languageOpen) {
        language_ = marker.language;
      }
      // A Latin language marker is passed as soon as it is found.
      const bool passed = languageOpen && marker.language > 0 && marker.text[1] > 0 &&
                          static_cast<unsigned char>(marker.text[1]) < 0x80;
      if (track_ <= 0 && !passed) {
        track_ = marker.track;
      }
    }
    return text;
  }

  std::mt19937 random_;
  int count_ = 0;
  int language_ = -1;
  int track_ = -1;
};

TEST(KaraokeName, IsReadBackAsItWasMade) {
  for (unsigned seed = 0; seed < 20000; ++seed) {
    const Grammar made(seed);
    ASSERT_EQ(fromName(made.name), made.expected) << made.name << ", seed " << seed;
  }
}

class KaraokeFile : public testing::Test {
 protected:
  void TearDown() override {
    test::removeRegistry();
    EXPECT_EQ(test::Holdings::after(before_), before_);
  }

  /// The add-on writes down its arguments and answers with what is inside the root element.
  void shellWrites(const string& content) {
    test::writeFile("/etc/config/document",
                    "<?xml version='1.0'?><KtvInfo>" + content + "</KtvInfo>");
    shellRuns(
        "printf '[%s]' \"$@\" >/etc/config/arguments\n"
        "for file; do :; done\ncat /etc/config/document >\"$file\"\n");
  }
  void shellRuns(const string& body) {
    test::registerAddOn("KTV", test::writeScript("/etc/config/shell", body));
  }

  KTV_ExtraData_t info_;
  test::Holdings before_ = test::Holdings::now();
};

TEST_F(KaraokeFile, IsDescribedByItsNameWithoutAnAddOn) {
  info_.genres = {"old"};
  EXPECT_EQ(velGetKTVInfo("/a_b[E]/A[M]+B[F]_Song[國][L].mkv", &info_), 0);
  EXPECT_EQ(described(info_), "Song|1 1|A:1;B:2;|1;");
  EXPECT_EQ(info_.gain + info_.reserved1 + info_.reserved2, -3);
  // Numbers start anew, a new title replaces, lists grow.
  EXPECT_EQ(velGetKTVInfo("C_[].mkv", &info_), 0);
  EXPECT_EQ(info_.language, 0);
  EXPECT_EQ(info_.title, "]");
  EXPECT_EQ(info_.artists.size(), 3U);
  EXPECT_EQ(info_.titlePatterns.size(), 2U);
  EXPECT_THAT(info_.genres, ElementsAre("old"));
}

TEST_F(KaraokeFile, IsDescribedByAnAddOnsPlainText) {
  shellWrites(
      "<Genre><Name>Pop</Name><Name> </Name><Name>R&amp;B</Name></Genre><Title> Song </Title>"
      "<TitleWordCount>07</TitleWordCount><Language>2x</Language><AudioTrack>-5</AudioTrack>"
      "<Gain>99999999999</Gain><Artist><Name Gender='2' Nationality='158'>A</Name><Name/>"
      "<Name Gender='x'>B</Name></Artist><Artist><Name>C</Name></Artist>");
  EXPECT_EQ(velGetKTVInfo("no folder; $(exit 1)", &info_), 0);
  EXPECT_THAT(test::readFile("/etc/config/arguments"),
              MatchesRegex("\\[getKTVInfo\\]\\[-f\\]\\[no folder; \\$\\(exit 1\\)\\]\\[-o\\]"
                           "\\[/tmp/libquilp\\.......\\]"));
  EXPECT_EQ(info_.title, "Song");
  EXPECT_EQ(info_.language, 2);
  EXPECT_EQ(info_.audioTrack, -5);
  EXPECT_EQ(info_.gain, 2147483647);
  ASSERT_EQ(info_.titlePatterns.size(), 1U);
  EXPECT_EQ(info_.titlePatterns[0].text, "");
  EXPECT_EQ(info_.titlePatterns[0].wordCount, 7);
  EXPECT_EQ(info_.titlePatterns[0].kind, 1);
  ASSERT_EQ(info_.artists.size(), 2U);
  EXPECT_EQ(info_.artists[0].gender, 2);
  EXPECT_EQ(info_.artists[0].nationality, 158);
  EXPECT_EQ(info_.artists[1].name, "B");
  EXPECT_EQ(info_.artists[1].gender + info_.artists[1].nationality, 0);
  EXPECT_THAT(info_.genres, ElementsAre("Pop", "R&B"));

  shellWrites("<Title><![CDATA[New]]></Title><Gain/><Artist/>");
  EXPECT_EQ(velGetKTVInfo(nullptr, &info_), 0);
  EXPECT_THAT(test::readFile("/etc/config/arguments"),
              testing::StartsWith("[getKTVInfo][-f][][-o]"));
  EXPECT_EQ(info_.title, "Song");
  EXPECT_EQ(info_.gain, -1);
  EXPECT_EQ(info_.titlePatterns.size() + info_.artists.size() + info_.genres.size(), 5U);
}

TEST_F(KaraokeFile, IsNotDescribedWhenTheAddOnFails) {
  for (const char* body : {"exit 3", "kill -9 $$", "exit 0", "echo '<Ktv/>' >\"$5\"",
                           "echo '<KtvInfo><Gain>1</Gain></KtvInfo>' >\"$5\"; exit 1"}) {
    shellRuns(body);
    info_.title = "old";
    info_.gain = info_.reserved2 = 5;
    EXPECT_EQ(velGetKTVInfo("/A_Song.mkv", &info_), 1) << body;
    EXPECT_EQ(described(info_), "old|-1 -1||") << body;
    EXPECT_EQ(info_.gain + info_.reserved2, -2);
  }
}

TEST_F(KaraokeFile, NullIsHarmless) {
  initKTVInfo(nullptr);
  EXPECT_EQ(velGetKTVInfo("a", nullptr), 1);
  EXPECT_EQ(velGetKTVInfo(nullptr, &info_), 0);
  EXPECT_EQ(BasicGetKTVInfo(nullptr, &info_) + BasicGetKTVInfo("a", nullptr), 0);
  EXPECT_EQ(parseArtist(nullptr, &info_) + parseTitleAndLangAndVocal(nullptr, &info_), 0);
  EXPECT_EQ(described(info_), "|-1 -1||");
}

TEST_F(KaraokeFile, IsShownAsJsonWhateverItsBytes) {
  shellWrites(
      "<Artist><Name Gender='3' Nationality='158'>\xE9\x9D\x92\xED\xA0\x80</Name></Artist>");
  const char* program = std::getenv("QUILP_PROGRAM");
  ASSERT_NE(program, nullptr);
  const string arguments = " karaoke --format json '[M,\xFF\xE9\x9D]' >/etc/config/songs.json";
  ASSERT_EQ(std::system((program + arguments).c_str()), 0);
  Json::CharReaderBuilder reader;
  Json::CharReaderBuilder::strictMode(&reader.settings_);
  std::ifstream file("/etc/config/songs.json");
  Json::Value songs;
  ASSERT_TRUE(Json::parseFromStream(reader, file, &songs, nullptr));
  ASSERT_EQ(songs.size(), 1U);
  EXPECT_EQ(songs[0]["file"], "[M,���]");
  EXPECT_EQ(songs[0]["artists"][0]["name"], "青���");
  EXPECT_EQ(songs[0]["artists"][0]["gender"], "group");
  EXPECT_EQ(songs[0]["artists"][0]["nationality"], 158);
  EXPECT_TRUE(songs[0]["title"].isNull() && songs[0]["genres"].empty());
}

}  // namespace
