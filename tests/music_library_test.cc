#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "libquilp.h"
#include "support.h"

namespace {

using std::string;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr char kKey[] = "?api_key=0f1e2d3c4b5a69788796a5b4c3d2e1f0";

string text(const char* field) { return field != nullptr ? field : "(null)"; }

/// A request as the site's log has it.
string metadata(const string& target, int status = 200) {
  return "musicbrainz.org GET /ws/2/" + target + " " + std::to_string(status);
}
string artwork(const string& path, int status = 200) {
  return "webservice.fanart.tv GET /v3/music/" + path + kKey + " " + std::to_string(status);
}

class Music : public testing::Test {
 protected:
  void SetUp() override {
    test::registerAddOn("Music", kShell);
    test::newSiteRequests();
  }
  void TearDown() override {
    release();
    test::removeRegistry();
    EXPECT_EQ(test::Holdings::after(before_), before_);
  }

  /// The add-on writes down its arguments and answers with the document.
  static void shellWrites(const string& document, const string& more = "") {
    test::writeFile("/etc/config/document", document);
    test::writeScript(kShell,
                      "printf '[%s]' \"$@\" >/etc/config/arguments\n"
                      "for file; do :; done\ncat /etc/config/document >\"$file\"\n" +
                          more);
  }
  static string arguments() {
    const string all = test::readFile("/etc/config/arguments");
    return all.substr(0, all.find("libquilp."));
  }

  int search(const char* album, const char* artist, int count) {
    release();
    return count_ = velSearchAlbum(album, artist, count, &albums_);
  }
  int list(const char* artist, int count) {
    release();
    return count_ = velGetAlbumByArtist(artist, count, &albums_);
  }
  int pictures(const char* artist, int count) {
    release();
    return thumbCount_ = velGetArtistThumbnail(artist, count, &thumbs_);
  }
  string row(int i) const {
    const velAlbum_& a = albums_[i];
    return text(a.name) + "|" + text(a.artist) + "|" + text(a.releasedate) + "|" + text(a.image);
  }
  void release() {
    velFreeAlbums(albums_, count_);
    velFreeThumbs(thumbs_, thumbCount_);
    albums_ = nullptr;
    thumbs_ = nullptr;
    count_ = thumbCount_ = 0;
  }

  static constexpr char kShell[] = "/etc/config/shell";
  velAlbum_* albums_ = nullptr;
  velThumb_* thumbs_ = nullptr;
  int count_ = 0;
  int thumbCount_ = 0;

 private:
  test::Holdings before_ = test::Holdings::now();
};
using AddOn = Music;

class BuiltIn : public Music {
  void SetUp() override { test::newSiteRequests(); }
};

const char kList[] =
    "<albumlist><album><image><![CDATA[I]]></image><name><![CDATA[N & <M>]]></name>"
    "<artist><![CDATA[A]]></artist><releasedate><![CDATA[]]></releasedate></album>"
    "<other/><album><name>plain</name></album></albumlist>";

TEST_F(AddOn, FillsAlbumsFromItsDocument) {
  shellWrites(kList);
  ASSERT_EQ(search("a 'b\" & $c", nullptr, 1), 2);
  EXPECT_EQ(row(0), "N & <M>|A||I");
  EXPECT_EQ(row(1), "(null)|(null)|(null)|(null)");
  EXPECT_EQ(arguments(), "[searchAlbum][-b][a 'b\" & $c][-a][][-n][1][-o][/tmp/");
  ASSERT_EQ(list("Artist", -2), 2);
  EXPECT_EQ(row(0), "N & <M>|(null)||I");
  EXPECT_EQ(arguments(), "[getAlbumByArtist][-a][Artist][-n][-2][-o][/tmp/");
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(AddOn, FillsPicturesFromItsDocument) {
  shellWrites(
      "<artistthumbnail><url><![CDATA[1]]></url><url>plain</url><url/>"
      "<url><![CDATA[]]></url></artistthumbnail>");
  ASSERT_EQ(pictures("X", 3), 4);
  EXPECT_STREQ(thumbs_[0].url, "1");
  EXPECT_EQ(thumbs_[1].url, nullptr);
  EXPECT_EQ(thumbs_[2].url, nullptr);
  EXPECT_STREQ(thumbs_[3].url, "");
  EXPECT_EQ(arguments(), "[getArtistThumbnail][-a][X][-n][3][-o][/tmp/");
}

TEST_F(AddOn, PrintsItsDocumentAsItIs) {
  const string document = "not XML <&\n" + string(5000, 'x') + "\nno line end";
  shellWrites(document);
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintSearchAlbum("B", nullptr, 7), 0); }),
            document);
  EXPECT_EQ(arguments(), "[searchAlbum][-b][B][-a][][-n][7][-o][/tmp/");
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintGetAlbumByArtist("A", 7), 0); }),
            document);
  EXPECT_EQ(arguments(), "[getAlbumByArtist][-a][A][-n][7][-o][/tmp/");
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintGetArtistThumbnail("A", 7), 0); }),
            document);
  EXPECT_EQ(arguments(), "[getArtistThumbnail][-a][A][-n][7][-o][/tmp/");
}

TEST_F(AddOn, AFailureGivesNothing) {
  const auto expectNothing = [this](const string& what) {
    EXPECT_EQ(search("x", "y", 1), 0) << what;
    EXPECT_EQ(albums_, nullptr) << what;
    EXPECT_EQ(list("x", 1), 0) << what;
    EXPECT_EQ(albums_, nullptr) << what;
    EXPECT_EQ(pictures("x", 1), 0) << what;
    EXPECT_EQ(thumbs_, nullptr) << what;
  };
  const auto printed = [](int status) {
    return test::standardOutputOf([status] {
      EXPECT_EQ(velPrintSearchAlbum("x", "y", 1), status);
      EXPECT_EQ(velPrintGetAlbumByArtist("x", 1), status);
      EXPECT_EQ(velPrintGetArtistThumbnail("x", 1), status);
    });
  };
  for (const char* end : {"exit 3\n", "kill -9 $$\n"}) {
    shellWrites(kList, end);
    expectNothing(end);
    EXPECT_EQ(printed(1), "") << end;
  }
  shellWrites("<movielist/>");
  expectNothing("another root");
  test::registerAddOn("Music", "/etc/config/none");
  expectNothing("no shell");
  EXPECT_EQ(printed(1), "");
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(AddOn, AnEmptyListIsStored) {
  shellWrites("<albumlist/>");
  EXPECT_EQ(search("x", "y", 1), 0);
  EXPECT_NE(albums_, nullptr);
  shellWrites("<artistthumbnail/>");
  EXPECT_EQ(pictures("x", 1), 0);
  EXPECT_NE(thumbs_, nullptr);
}

TEST_F(AddOn, OfAnotherClassServesThePrintFunctionsAlone) {
  shellWrites(kList);
  test::writeFile("/etc/config/zorp.conf",
                  string("[x]\nClass=Other\nType=Music\nEnable=TRUE\nShell=") + kShell + "\n");
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintSearchAlbum("moths", "", 1), 0); }),
            kList);
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
  ASSERT_EQ(search("moths", "", 1), 1);
  EXPECT_THAT(row(0), StartsWith("Paper Moths|"));
}

TEST_F(BuiltIn, SearchesAlbums) {
  ASSERT_EQ(search("ballast", nullptr, 5), 2);
  EXPECT_EQ(row(0), "Ballast|The Tin Harbour||");
  EXPECT_EQ(row(1), "Ballast|Mira Vane & the Lanterns||https://images.example/ballast.jpg");
  EXPECT_THAT(test::newSiteRequests(),
              ElementsAre(metadata("release-group/?query=\"ballast\"&type=album"),
                          artwork("albums/ba1a1a1a1-0001-4"), artwork("albums/ba1a1a1a1-0002-2")));
  ASSERT_EQ(search("Salt & Rope", "Tin Harbour", 5), 1);
  EXPECT_EQ(row(0), "Salt & Rope|The Tin Harbour||https://images.example/rope.jpg?a=1&b=2");
  EXPECT_EQ(test::newSiteRequests().at(0),
            metadata("release-group/?query=\"Salt+%26+Rope\"+and+artist:\"Tin+Harbour\""
                     "&type=album"));
}

TEST_F(BuiltIn, ASearchTakesTheFirstAttributeAsIdentifierAndNoDisc) {
  ASSERT_EQ(search("brass", "", 1), 1);
  EXPECT_EQ(row(0), "Brass Weather|The Tin Harbour||");
  EXPECT_EQ(test::newSiteRequests().at(1), artwork("albums/Album", 404));
  ASSERT_EQ(search("fog", "", 1), 1);
  EXPECT_EQ(row(0), "Fog Signals|The Tin Harbour||");
}

TEST_F(BuiltIn, ListsTheAlbumsAmongTheFirstOnes) {
  ASSERT_EQ(list("The Tin Harbour", 10), 7);
  const char* const kRows[] = {
      "Salt & Rope|(null)|1998-03-09|https://images.example/rope.jpg?a=1&b=2",
      "Fog Signals|(null)|2001-11|https://images.example/fog-disc.png",
      "Ballast|(null)|2003|",
      "Low Water|(null)|2005|",
      "Brass Weather|(null)||https://images.example/brass.jpg",
      "(null)|(null)|2008|https://images.example/untitled.jpg",
      "Crossing \xC3\x9F|(null)|2011|https://images.example/\xC3\xBC.jpg",
      "(null)|(null)|(null)|(null)"};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(row(i), kRows[i]);
  }
  EXPECT_THAT(test::newSiteRequests(),
              ElementsAre(metadata("artist/?query=\"The+Tin+Harbour\""),
                          metadata("release-group?artist=a1a1a1a1-0001&type=album"),
                          artwork("albums/ba1a1a1a1-0001-1"), artwork("albums/ba1a1a1a1-0001-3"),
                          artwork("albums/ba1a1a1a1-0001-4"), artwork("albums/ba1a1a1a1-0001-6"),
                          artwork("albums/ba1a1a1a1-0001-7"), artwork("albums/ba1a1a1a1-0001-8"),
                          artwork("albums/ba1a1a1a1-0001-10")));
  EXPECT_EQ(list("Tin Harbour", 20), 8);  // the type is compared to the letter
}

TEST_F(BuiltIn, AListingMakesOneRequestForEachAlbum) {
  ASSERT_EQ(list("forty winks", 25), 25);
  const auto requests = test::newSiteRequests();
  ASSERT_THAT(requests, SizeIs(2 + 25));
  for (int i = 1; i <= 25; ++i) {
    const string n = std::to_string(i);
    EXPECT_EQ(requests[static_cast<std::size_t>(i) + 1], artwork("albums/ba1a1a1a1-0100-" + n));
    EXPECT_EQ(text(albums_[i - 1].image), "https://images.example/sleep" + n + ".jpg");
  }
}

TEST_F(BuiltIn, ListsPictures) {
  ASSERT_EQ(pictures("tin harbour", 3), 3);
  EXPECT_STREQ(thumbs_[0].url, "https://images.example/harbour/1.jpg");
  EXPECT_STREQ(thumbs_[2].url, "https://images.example/harbour/3.jpg");
  EXPECT_THAT(test::newSiteRequests(),
              ElementsAre(metadata("artist/?query=\"tin+harbour\""), artwork("a1a1a1a1-0001")));
  EXPECT_EQ(pictures("tin harbour", 8), 7);
  EXPECT_EQ(pictures("mira vane", 8), 0);  // no backgrounds: an empty array
  EXPECT_NE(thumbs_, nullptr);
}

TEST_F(BuiltIn, CountsBelowOneGiveAnEmptyArray) {
  for (const int count : {0, -4}) {
    test::newSiteRequests();
    EXPECT_EQ(search("ballast", "", count), count);
    EXPECT_NE(albums_, nullptr);
    EXPECT_EQ(list("tin harbour", count), 0);
    EXPECT_NE(albums_, nullptr);
    EXPECT_EQ(pictures("tin harbour", count), 0);
    EXPECT_NE(thumbs_, nullptr);
    EXPECT_THAT(test::newSiteRequests(), SizeIs(1 + 2 + 2));
    EXPECT_EQ(test::standardOutputOf([count] {
                EXPECT_EQ(velPrintSearchAlbum("ballast", "", count), 1);
                EXPECT_EQ(velPrintGetAlbumByArtist("tin harbour", count), 1);
                EXPECT_EQ(velPrintGetArtistThumbnail("tin harbour", count), 1);
              }),
              "");
  }
}

TEST_F(BuiltIn, WhatTheServiceDoesNotKnowIsUntouched) {
  for (const char* unknown : {"Nobody At All", "", "faultempty tin", "faultcut tin",
                              "faultbinary tin", "faultclosed tin", "faultmoved tin"}) {
    EXPECT_EQ(list(unknown, 5), 0) << unknown;
    EXPECT_EQ(pictures(unknown, 5), 0) << unknown;
    EXPECT_EQ(albums_, nullptr) << unknown;
    EXPECT_EQ(thumbs_, nullptr) << unknown;
    EXPECT_EQ(search(unknown, unknown, 5), 0) << unknown;
    EXPECT_EQ(albums_, nullptr) << unknown;
  }
  EXPECT_EQ(list("silent room", 5), 0);
  EXPECT_EQ(albums_, nullptr);
  EXPECT_EQ(list(nullptr, 5) + pictures(nullptr, 5) + search(nullptr, nullptr, 5), 0);
}

TEST_F(BuiltIn, TriesThreeTimesWhileTheServiceIsOverloaded) {
  const string lookup = "artist/?query=\"night+rush\"";
  ASSERT_EQ(list("night rush", 5), 1);
  EXPECT_THAT(test::newSiteRequests(),
              ElementsAre(metadata(lookup, 503), metadata(lookup, 503), metadata(lookup),
                          metadata("release-group?artist=a1a1a1a1-0003&type=album"),
                          artwork("albums/ba1a1a1a1-0003-1")));
  EXPECT_EQ(pictures("night rush", 5), 1);
  EXPECT_EQ(search("crosstown", "night rush", 5), 1);
  EXPECT_THAT(test::newSiteRequests(), SizeIs(4 + 4));
  EXPECT_EQ(search("fault503 ballast", "", 5), 0);
  EXPECT_EQ(list("fault503 tin", 5), 0);
  EXPECT_EQ(pictures("fault503 tin", 5), 0);
  EXPECT_EQ(albums_, nullptr);
  EXPECT_EQ(thumbs_, nullptr);
  EXPECT_THAT(test::newSiteRequests(), SizeIs(3 + 3 + 3));
}

TEST_F(BuiltIn, AnArtworkDocumentThatCannotBeReadEndsAListingButNoSearch) {
  const string message = "Failed to parse configuration\n* Line 1, Column 1\n  Syntax error";
  EXPECT_THAT(test::standardErrorOf([this] { EXPECT_EQ(list("torn sleeve", 5), 0); }),
              HasSubstr(message));
  ASSERT_NE(albums_, nullptr);
  EXPECT_EQ(row(0), "First Press|(null)|1990|https://images.example/press.jpg");
  EXPECT_EQ(row(1), "Second Press|(null)|1991|(null)");
  EXPECT_EQ(row(2), "(null)|(null)|(null)|(null)");
  EXPECT_THAT(test::newSiteRequests(), SizeIs(2 + 2));
  count_ = 3;  // this test knows how many there are
  EXPECT_THAT(test::standardErrorOf([this] { EXPECT_EQ(search("press", "", 5), 3); }),
              HasSubstr(message));
  EXPECT_EQ(row(1), "Second Press|Torn Sleeve||");
  EXPECT_EQ(row(2), "Third Press|Torn Sleeve||https://images.example/third.jpg");
  EXPECT_THAT(test::standardErrorOf([this] { EXPECT_EQ(pictures("torn sleeve", 5), 0); }),
              HasSubstr(message));
  EXPECT_EQ(thumbs_, nullptr);
  // The print function alone can release what was stored: the leak checker watches.
  EXPECT_EQ(
      test::standardOutputOf([] { EXPECT_EQ(velPrintGetAlbumByArtist("torn sleeve", 5), 1); }), "");
}

TEST_F(BuiltIn, DocumentsOfAnotherShapeHoldNothing) {
  ASSERT_EQ(list("odd shapes", 20), 8);
  for (int i = 0; i < 7; ++i) {
    EXPECT_STREQ(albums_[i].image, "") << albums_[i].name;
  }
  EXPECT_STREQ(albums_[7].image, "https://images.example/null.png");
  ASSERT_EQ(search("odd", "shapes", 20), 8);
  EXPECT_STREQ(albums_[7].image, "");
  ASSERT_EQ(pictures("odd shapes", 20), 6);
  for (int i = 0; i < 5; ++i) {
    EXPECT_STREQ(thumbs_[i].url, "") << i;
  }
  EXPECT_STREQ(thumbs_[5].url, "https://images.example/odd.jpg");
}

TEST_F(BuiltIn, AnyAddressIsOneArgument) {
  EXPECT_EQ(search("a\"b\\c 'd' $(touch /tmp/ran) `touch /tmp/ran`\n%25 {1,2}[1-9]#&x=y", "q\\", 1),
            0);
  EXPECT_THAT(test::newSiteRequests(),
              ElementsAre(metadata("release-group/?query=\"a\"b\\c+%27d%27+%24%28touch+/tmp/ran%29+"
                                   "%60touch+/tmp/ran%60%0a%2525+%7b1%2c2%7d%5b1-9%5d%23%26x=y\""
                                   "+and+artist:\"q\\\"&type=album")));
  // So is one that a document makes: the identifiers of this artist are shell commands.
  EXPECT_EQ(list("curly braces", 5), 1);
  EXPECT_EQ(pictures("curly braces", 5), 0);
  test::newSiteRequests();
  ASSERT_EQ(search("knotted", "", 1), 1);
  EXPECT_THAT(test::newSiteRequests().back(),
              StartsWith("webservice.fanart.tv GET /v3/music/albums/'$(touch${IFS}/tmp/ran)'"
                         "{1,2}[3-9]`touch${IFS}/tmp/ran`\\?api_key="));
  EXPECT_NE(access("/tmp/ran", F_OK), 0);
}

TEST_F(BuiltIn, PrintsWhatItFinds) {
  const string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintSearchAlbum("salt", nullptr, 9), 0); }),
            declaration +
                "<albumlist>\n\t<album rank=\"1\">\n\t\t<artist>The Tin Harbour</artist>\n"
                "\t\t<name>Salt &amp; Rope</name>\n\t\t<releasedate></releasedate>\n"
                "\t\t<image>https://images.example/rope.jpg?a=1&amp;b=2</image>\n"
                "\t</album>\n</albumlist>\n\n");
  const string listed =
      test::standardOutputOf([] { EXPECT_EQ(velPrintGetAlbumByArtist("harbour", 8), 0); });
  EXPECT_THAT(listed, StartsWith(declaration +
                                 "<albumlist>\n\t<album rank=\"1\">\n"
                                 "\t\t<name>Salt &amp; Rope</name>\n"
                                 "\t\t<releasedate>1998-03-09</releasedate>\n"
                                 "\t\t<image>https://images.example/rope.jpg?a=1&amp;b=2</image>\n"
                                 "\t</album>\n\t<album rank=\"2\">\n"));
  EXPECT_THAT(listed, testing::EndsWith("\t<album rank=\"6\">\n\t\t<name/>\n"
                                        "\t\t<releasedate>2008</releasedate>\n"
                                        "\t\t<image>https://images.example/untitled.jpg</image>\n"
                                        "\t</album>\n</albumlist>\n\n"));
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintGetArtistThumbnail("harbour", 2), 0); }),
            declaration +
                "<artistthumbnail>\n\t<url>https://images.example/harbour/1.jpg</url>\n"
                "\t<url>https://images.example/harbour/2.jpg</url>\n</artistthumbnail>\n\n");
  EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintSearchAlbum("no such", "", 9), 1); }),
            "");
}

TEST_F(BuiltIn, WithoutATemporaryNameNothingIsFetched) {
  ASSERT_EQ(chmod("/tmp", 0), 0);
  EXPECT_EQ(list("tin harbour", 5), 0);
  EXPECT_EQ(search("ballast", "", 5), 0);
  EXPECT_EQ(pictures("tin harbour", 5), 0);
  chmod("/tmp", 01777);
  EXPECT_THAT(test::newSiteRequests(), IsEmpty());
}

TEST_F(BuiltIn, AFullDiskLeavesNothingBehind) {
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
    EXPECT_EQ(list("forty winks", 40), 0) << pages;
    EXPECT_EQ(search("sleep", "", 40), 0) << pages;
    ASSERT_EQ(ftruncate(fileno(disk), lseek(fileno(disk), 0, SEEK_END) - 4096), 0);
  }
  std::fclose(disk);
  std::remove("/tmp/filler");
  EXPECT_EQ(list("forty winks", 40), 40);
}

TEST(Free, TakesNullAndCountsBelowOne) {
  velFreeAlbums(nullptr, 3);
  velFreeThumbs(nullptr, 3);
  velFreeAlbums(static_cast<velAlbum_*>(std::calloc(3, sizeof(velAlbum_))), 0);
  velFreeThumbs(static_cast<velThumb_*>(std::calloc(3, sizeof(velThumb_))), -1);
}

}  // namespace
