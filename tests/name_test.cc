#include "name/name.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "name/format.h"
#include "name_rows.h"

namespace {

using libquilp::Name;
using libquilp::NameKind;
using libquilp::NameSpan;
using libquilp::readName;
using std::string;

TEST(Name, NamesOfTheTableAreReadAsItSays) {
  const int rows = names::forEachRow("video.tsv", [](const string& name, const string& row) {
    EXPECT_EQ(names::rowOf(name, fieldsOf(readName(name))), row);
  });
  EXPECT_GT(rows, 300);
}

/// The bytes that a field was read from.
std::vector<string> bytesOf(const string& text, libquilp::NameField field) {
  std::vector<string> pieces;
  for (const NameSpan& span : readName(text).spans) {
    if (span.field == field) {
      pieces.push_back(text.substr(span.begin, span.end - span.begin));
    }
  }
  return pieces;
}

TEST(Name, SpansAreTheBytesThatFieldsCameFrom) {
  using testing::ElementsAre;
  const string name = "Signal.Row.S02E01-E03.The.Points.1080p.WEB-DL-SALTY.mkv";
  EXPECT_THAT(bytesOf(name, libquilp::NameField::kTitle), ElementsAre("Signal.Row"));
  EXPECT_THAT(bytesOf(name, libquilp::NameField::kEpisodeTitle), ElementsAre("The.Points"));
  EXPECT_THAT(bytesOf(name, libquilp::NameField::kResolution), ElementsAre("1080p"));
  EXPECT_THAT(bytesOf(name, libquilp::NameField::kGroup), ElementsAre("SALTY"));
  EXPECT_THAT(bytesOf("Signal Row/Season 02/01 - The Points.mkv", libquilp::NameField::kTitle),
              ElementsAre("Signal Row"));
}

TEST(Name, SpansLieInTheNameAndDoNotOverlap) {
  names::forEachRow("video.tsv", [](const string& name, const string&) {
    // Cut off anywhere, and with any hint.
    for (std::size_t size = 0; size <= name.size(); ++size) {
      const string text = name.substr(0, size);
      for (const NameKind hint : {NameKind::kUnknown, NameKind::kMovie, NameKind::kEpisode}) {
        std::vector<NameSpan> spans = readName(text, hint).spans;
        std::sort(spans.begin(), spans.end(),
                  [](const NameSpan& a, const NameSpan& b) { return a.begin < b.begin; });
        std::size_t end = 0;
        for (const NameSpan& span : spans) {
          ASSERT_TRUE(span.begin >= end && span.begin < span.end && span.end <= size) << text;
          end = span.end;
        }
      }
    }
  });
}

class CanonicalName : public testing::Test {
 protected:
  template <class Value>
  Value pick(const std::vector<Value>& from) {
    return from[random_() % from.size()];
  }

  unsigned random(unsigned below) { return static_cast<unsigned>(random_() % below); }

  bool chance(unsigned of) { return random_() % of == 0; }

  Name release() {
    Name name;
    name.title = pick<string>({"Harbour Lights", "Up", "S.W.A.T", "Fog 3", "The French Harbour",
                               "Fog III", "Room 1408", "Маяк", "灯塔守护者", "Salt & Stone",
                               "Spider-Crab", "What's On, Ida", "1917"});
    name.resolution = pick<string>({"", "720p", "1080p", "2160p"});
    name.source = pick<string>({"", "Blu-ray", "WEB-DL", "HDTV", "DVD"});
    name.videoCodec = pick<string>({"", "H.264", "H.265", "XviD", "AV1"});
    name.group = name.resolution.empty() ? "" : pick<string>({"", "SALTY", "TiDE"});
    name.container = pick<string>({"", "mkv", "mp4"});
    return name;
  }

  void expectFixed(const Name& name) {
    const auto text = formatted(name);
    ASSERT_TRUE(text) << names::rowOf("", fieldsOf(name));
    EXPECT_TRUE(tellSame(readName(*text, name.kind), name)) << *text;
  }

 private:
  std::mt19937 random_{3};  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
};

TEST_F(CanonicalName, OfAFilmReadsAsThatFilm) {
  for (int i = 0; i < 2000; ++i) {
    Name name = release();
    name.kind = NameKind::kMovie;
    name.year = pick<int>({1931, 1998, 2011, 2024});
    name.edition = pick<string>({"", "", "Director's Cut", "Extended", "IMAX"});
    name.part = chance(4) ? pick<string>({"1", "2"}) : "";
    if (chance(4)) {
      name.identifiers.push_back({"imdb", "tt0123456"});
    }
    expectFixed(name);
  }
}

TEST_F(CanonicalName, OfAnEpisodeReadsAsThatEpisode) {
  for (int i = 0; i < 2000; ++i) {
    Name name = release();
    name.kind = NameKind::kEpisode;
    name.year = chance(3) ? 2014 : 0;
    name.episodeTitle = pick<string>({"", "The Points", "Dark Water", "夜の港"});
    switch (random(4)) {
      case 0:
        name.airDate = "2019-05-31";
        break;
      case 1:
        name.absoluteEpisodes = {pick<int>({1, 7, 12, 113, 1023})};
        break;
      default:
        name.seasons = {pick<int>({0, 1, 2, 10})};
        name.episodes = {pick<int>({1, 9, 22, 101})};
        for (auto more = random(3); more > 0; --more) {
          name.episodes.push_back(name.episodes.back() + 1);
        }
    }
    expectFixed(name);
  }
}

TEST_F(CanonicalName, OfTheTableReadsAsWhatItCameFrom) {
  int written = 0;
  const int rows = names::forEachRow("video.tsv", [&](const string& name, const string&) {
    written += formatted(readName(name)) ? 1 : 0;
  });
  EXPECT_GT(written, rows * 9 / 10);
}

}  // namespace
