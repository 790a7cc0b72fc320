#include "name/song.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "libquilp.h"
#include "name/format.h"
#include "name_rows.h"

namespace {

using libquilp::isSong;
using libquilp::readSong;
using libquilp::Song;
using std::string;

TEST(Song, NamesOfTheTableAreReadAsItSays) {
  const int rows = names::forEachRow("songs.tsv", [](const string& name, const string& row) {
    EXPECT_EQ(names::rowOf(name, fieldsOf(readSong(name))), row);
  });
  EXPECT_GT(rows, 100);
}

TEST(Song, FolderExtensionAndMarksTellWhetherItIsOne) {
  for (const char* path :
       {"a.kar", "Lane - Lights.CDG", "Lane - Lights.mp3+g", "Lane - Lights (CDG).zip",
        "/songs/KTV/a.mkv", "/songs/My Karaoke/b/a.mp4", "伴奏/a.mp3", "D:\\卡拉OK\\a.mpg",
        "Lane[F]&Reed[M]_Lights[E][L].mkv", "Lane - Lights (Karaoké).mp4"}) {
    EXPECT_TRUE(isSong(path)) << path;
  }
  for (const char* path : {"", "a.mkv", "Lane - Lights.zip", "karaoke.mkv", "/films/kar/a.mkv",
                           "/films/Karaokes/a.mkv", "/films/ktvx/a.mkv",
                           "Karaoke Nights (1999).mkv", "(Karaoke) 1999.mkv"}) {
    EXPECT_FALSE(isSong(path)) << path;
  }
}

/// What the karaoke parser says of a name, in the reader's words.
Song parsed(const string& name) {
  const char* const languages[] = {"zh", "yue", "nan", "en", "ja", "ko", "th", "es"};
  const char* const tracks[] = {"L", "R", "S", "0", "1"};
  KTV_ExtraData_t info;
  initKTVInfo(&info);
  BasicGetKTVInfo(name.c_str(), &info);
  Song song;
  for (const ArtistData_t& artist : info.artists) {
    song.artists.push_back(artist.name);
  }
  song.title = info.title;
  if (info.language > 0) {
    song.languages.emplace_back(languages[info.language - 1]);
  }
  if (info.audioTrack > 0) {
    song.vocalTrack = tracks[info.audioTrack - 1];
  }
  song.container = "mkv";
  return song;
}

TEST(Song, MarkerFormIsReadAsTheKaraokeParserReadsIt) {
  std::mt19937 random(7);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
  const auto pick = [&random](const std::vector<string>& from) {
    return from[random() % from.size()];
  };
  const std::vector<string> names = {"林小雨", "Anna Lane", "北極星", "The Gulls", "X"};
  const std::vector<string> titles = {"夜航船", "Harbour Lights", "Rock", "Part_Two", "国语", "99"};
  const std::vector<string> genders = {"[M]", "[F]", "[G]", "[?]"};
  const std::vector<string> languages = {"[M]",  "[C]",   "[T]",  "[E]",  "[J]", "[K]",
                                         "[ES]", "[THA]", "[國]", "[闽]", "[韩]"};
  for (int i = 0; i < 2000; ++i) {
    string name = pick(names) + pick(genders);
    for (auto more = random() % 3; more > 0; --more) {
      name += pick({"+", "&", "＋", "＆"}) + pick(names) + pick(genders);
    }
    name += '_' + pick(titles) + pick(languages) + pick({"", "[L]", "[R]", "[S]", "[0]", "[1]"});
    name += ".mkv";
    EXPECT_EQ(readSong(name), parsed(name)) << name;
  }
}

TEST(Song, CanonicalNameOfASongReadsAsThatSong) {
  std::mt19937 random(8);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
  const auto pick = [&random](const std::vector<string>& from) {
    return from[random() % from.size()];
  };
  for (int i = 0; i < 5000; ++i) {
    Song song;
    for (auto artists = random() % 4; artists > 0; --artists) {
      song.artists.push_back(
          pick({"林小雨", "Anna Lane", "Jay-Lee", "311", "The Gulls", "X", "DJ Mar"}));
    }
    song.title = pick({"夜航船", "Anti-Hero", "99", "Part - Two", "Rock", "国语", "Karaoke",
                       "Harbour Lights (Live)", "SC1234-05", "1999 & All", "feat", "A / B"});
    for (auto languages = random() % 3; languages > song.languages.size();) {
      song.languages.push_back(song.languages.empty() ? pick({"zh", "yue", "nan", "no"}) : "en");
    }
    song.vocalTrack = pick({"", "instrumental", "vocal", "guide", "L", "1"});
    song.style = pick({"", "流行", "Pop", "Sea shanty"});
    song.discId = pick({"", "SC1234-05", "QK880"});
    song.container = pick({"", "mkv", "kar"});
    const auto name = formatted(song);
    ASSERT_TRUE(name) << song.title;
    EXPECT_EQ(readSong(*name), song) << *name;
  }
}

TEST(Song, LongAndHostileNamesAreReadInLinearTime) {
  for (const char* piece : {"(", "[]", "《", "-", " - ", "_", "&", " feat. ", "[M]_", "a-", "国语-",
                            " karaoke", "in the style of ", "\xFF\xE3\x80", "1-", "SC12-"}) {
    string name;
    while (name.size() < 200000) {
      name += piece;
    }
    readSong(name);  // a test that runs longer than a minute is ended
  }
}

}  // namespace
