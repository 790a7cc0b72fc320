#include <gtest/gtest.h>
#include <json/reader.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "libquilp.h"
#include "lookups.h"
#include "support.h"

namespace {

using std::string;

string fromName(const string& name) { return test::ask("velGetKTVInfo", {name.c_str()}).text; }

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
  // Names that are not the standard's.
  std::map<string, string> telling = {{"AX", "Aland"},
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
                                      {"VG", "Virgin Islands, British"}};
  const CountryEntry* row = g_CountryCode;
  for (string last; row->alpha2 != nullptr; ++row) {  // in the order of their names
    EXPECT_EQ(std::make_pair(string(row->alpha3), row->numeric), codes[row->alpha2]) << row->alpha2;
    EXPECT_LT(last, row->name);
    last = row->name;
    EXPECT_TRUE(telling.count(row->alpha2) == 0 || telling[row->alpha2] == last) << last;
  }
  EXPECT_EQ(row - g_CountryCode, 249);
  EXPECT_TRUE(row->alpha3 == nullptr && row->name == nullptr && row->numeric == 0);
}

class KaraokeName : public testing::Test {
  void SetUp() override { test::writeFile("/etc/config/zorp.conf", ""); }
};

TEST_F(KaraokeName, IsReadAsCallersWereBuiltOn) {
  const std::array<string, 2> cases[] = {
      // Where the parts end.
      {"A[M]+B[F]_Song[國][L].mkv", "title:Song|language:1|track:1|A:1|B:2|words:1|"},
      {"Song[E].mp4", "title:Song|language:4|words:1|"},
      {"_Song.mp4", "title:Song|words:1|"},
      {"A_Song.live.mkv", "title:Song.live|A:0|words:1|"},
      {"A_b_c", "title:b_c|A:0|words:2|"},
      {"__a_", "title:_a_|words:1|"},
      {"A_", "A:0|"},
      {"", ""},
      {".mkv", ""},
      {"A[.x]_Song", "title:A|language:0|track:0|words:1|"},
      // Titles and markers.
      {"Song Title[M][L].mkv", "title:Song Title|language:1|track:1|words:2|"},
      {"Song[國][R].mkv", "title:Song|language:1|track:2|words:1|"},
      {"Song[國].mkv", "title:Song|language:1|track:0|words:1|"},
      {"Song[X].mkv", "title:Song|language:0|track:0|words:1|"},
      {"Song[X][C][1].mkv", "title:Song|language:2|track:5|words:1|"},
      {"Song[L][X][M][R].mkv", "title:Song|language:1|track:1|words:1|"},
      {"Song[T][E].mkv", "title:Song|language:3|track:0|words:1|"},
      {"Song[THA][0].mkv", "title:Song|language:7|track:4|words:1|"},
      {"Song[ES]x[S]y.mkv", "title:Song|language:8|track:3|words:1|"},
      {"Song[m][l].mkv", "title:Song|language:0|track:0|words:1|"},
      {" Song [J] x.mkv", "title: Song |language:5|words:1|"},
      // Before the title: the rest of a Chinese marker becomes one.
      {"[M]Song.mkv", "title:Song|language:1|words:1|"},
      {"[X]Song.mkv", "title:X]Song|language:0|track:0|words:1|"},
      {"[國]Song.mkv", "title:國]Song|language:1|track:0|words:2|"},
      {"[L][國]Song.mkv", "title:\x8B]Song|language:1|track:1|words:1|"},
      {"[L]x[國]Song.mkv", "title:x|language:1|track:1|words:1|"},
      {"[M", "title:M|language:0|track:0|words:1|"},
      {"[[[M]", "language:1|track:0|"},
      {"x[\xE5", "title:x|language:0|track:0|words:1|"},
      // Artists.
      {"A&B[G]_x", "title:x|A:0|B:3|words:1|"},
      {"A [M] + B_x", "title:x|A :1| B:0|words:1|"},
      {"A[M]B_x", "title:x|A:1|words:1|"},
      {"A[X]+B_x", "title:x|A:0|B:0|words:1|"},
      {"+A_x", "title:x|A:0|words:1|"},
      {"A++&B+_x", "title:x|A:0|B:0|words:1|"},
      {"A＋B＆C_x", "title:x|A:0|B:0|C:0|words:1|"},
      {"[F]A+B_x", "title:x|B:0|words:1|"},
      {"A+[F]B＆[M+C[F_x", "title:x|A:0|C:0|words:1|"},
      {"A\xEF\xBC_x", "title:x|A\xEF\xBC:0|words:1|"},
  };
  for (const auto& [name, expected] : cases) {
    EXPECT_EQ(fromName(name), expected) << name;
  }
}

TEST(KaraokeTitle, CountsWords) {
  const std::pair<const char*, int> cases[] = {
      {"two words", 2},
      {"夜航船", 3},
      {"a青b", 3},
      {"rock'n'roll", 1},
      {"_a_b", 2},
      {"...a", 1},
      // A lead byte takes as many bytes with it as it announces, but not after a Latin word.
      {"\xE5xy z", 2},
      {"x\xE5xy z", 4},
      {"\xE0xy", 2},
      {"\xF0xyz", 1},
      {"a\x80\xBF", 1}};
  for (const auto& [title, words] : cases) {
    EXPECT_EQ(parsed(parseTitleAndLangAndVocal, title).titlePatterns.at(0).wordCount, words);
  }
}

TEST_F(KaraokeName, OfAFileDescribesIt) {
  KTV_ExtraData_t info;
  info.genres = {"old"};
  EXPECT_EQ(velGetKTVInfo("/a_b[E]/A[M]+B[F]_Song[國][L].mkv", &info), 0);
  EXPECT_EQ(test::described(info), "title:Song|language:1|track:1|A:1|B:2|words:1|genre:old|");
  // Numbers start anew, a new title replaces, lists grow.
  EXPECT_EQ(velGetKTVInfo("C_[].mkv", &info), 0);
  EXPECT_EQ(test::described(info),
            "title:]|language:0|track:0|A:1|B:2|C:0|words:1|of:Song|words:0|genre:old|");
}

TEST(KaraokeFile, NullIsHarmless) {
  KTV_ExtraData_t info;
  initKTVInfo(nullptr);
  EXPECT_EQ(velGetKTVInfo("a", nullptr), 1);
  EXPECT_EQ(velGetKTVInfo(nullptr, &info), 0);
  EXPECT_EQ(BasicGetKTVInfo(nullptr, &info) + BasicGetKTVInfo("a", nullptr), 0);
  EXPECT_EQ(parseArtist(nullptr, &info) + parseTitleAndLangAndVocal(nullptr, &info), 0);
  EXPECT_EQ(test::described(info), "");
}

}  // namespace
