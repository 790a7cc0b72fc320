#include "name/song.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "libquilp.h"

namespace {

using libquilp::isSong;
using libquilp::readSong;
using libquilp::Song;
using std::string;

string joined(const std::vector<string>& texts) {
  string all;
  for (const string& text : texts) {
    all += (all.empty() ? "" : ";") + text;
  }
  return all;
}

/// A row of the table: the name, and a tab and KEY=VALUE for each field that is told.
string rowOf(const string& name) {
  const Song song = readSong(name);
  string row = name;
  const auto add = [&row](const char* key, const string& value) {
    row += value.empty() ? "" : '\t' + string(key) + '=' + value;
  };
  add("artist", joined(song.artists));
  add("title", song.title);
  add("language", joined(song.languages));
  add("vocal_track", song.vocalTrack);
  add("style", song.style);
  add("disc_id", song.discId);
  return row;
}

TEST(Song, NamesOfTheTableAreReadAsItSays) {
  std::ifstream table(QUILP_NAMES "/songs.tsv");
  int rows = 0;
  for (string row; std::getline(table, row); ++rows) {
    EXPECT_EQ(rowOf(row.substr(0, row.find('\t'))), row);
  }
  EXPECT_GT(rows, 100);
}

TEST(Song, FolderAndExtensionTellWhetherItIsOne) {
  for (const char* path :
       {"a.kar", "Lane - Lights.CDG", "Lane - Lights.mp3+g", "Lane - Lights (CDG).zip",
        "/songs/KTV/a.mkv", "/songs/My Karaoke/b/a.mp4", "伴奏/a.mp3", "D:\\卡拉OK\\a.mpg"}) {
    EXPECT_TRUE(isSong(path)) << path;
  }
  for (const char* path : {"", "a.mkv", "Lane - Lights.zip", "karaoke.mkv", "/films/kar/a.mkv",
                           "/films/Karaokes/a.mkv", "/films/ktvx/a.mkv"}) {
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
  std::mt19937 random(7);
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
    EXPECT_EQ(readSong(name), parsed(name)) << rowOf(name);
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
