// Documents and page files that are made to hang their reader, or to fill its memory.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "libquilp.h"
#include "support.h"

namespace {

using std::string;

/// Nothing where a sanitizer keeps what is released.
long mostMemoryKiB() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  return 0;
#endif
  rusage usage = {};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

/// What every lookup makes of a document that the script writes to "$file", behind "$root".
void expectNoDocument(const char* script) {
  for (const char* type : {"Movie", "TV", "Music", "KTV"}) {
    test::registerAddOn(
        type, test::writeScript("/etc/config/addon", string("for file; do :; done\n") + script));
    if (*type == 'T') {
      velTVShowInfo show = {};
      EXPECT_EQ(velGetTVShowByID("abcde1", "en", &show), 1) << script;
    } else if (*type == 'K') {
      KTV_ExtraData_t song = {};
      EXPECT_EQ(velGetKTVInfo("song.mpg", &song), 1) << script;
    } else if (*type == 'M' && type[1] == 'o') {
      velMovie_* movies = nullptr;
      int error = 0;
      EXPECT_EQ(velSearchMovie("x", 1, &movies, &error), 0) << script;
      EXPECT_EQ(movies, nullptr);
      EXPECT_EQ(error, 0);
    } else {
      velAlbum_* albums = nullptr;
      EXPECT_EQ(velSearchAlbum("x", "y", 1, &albums), 0) << script;
      EXPECT_EQ(test::standardOutputOf([] { EXPECT_EQ(velPrintSearchAlbum("x", "", 1), 1); }), "")
          << script;
    }
  }
  test::removeRegistry();
}

TEST(Document, ThatIsNoFileOrHasNoEndIsNoDocument) {
  const long before = mostMemoryKiB();
  for (const char* script :
       {"mkfifo \"$file\"\n", "mkdir \"$file\"\n", "ln -s /dev/zero \"$file\"\n",
        "ln -s \"$file\" \"$file\"\n", "truncate -s 1G \"$file\"\n"}) {
    expectNoDocument(script);
  }
  EXPECT_LT(mostMemoryKiB() - before, 16 * 1024);
}

/// A details lookup of the document behind `start`, in which `repeated` fills 8 MiB.
int movieOf(const string& start, const string& repeated, const string& end) {
  string document = start;
  while (document.size() < 8U << 20) {
    document += repeated;
  }
  test::writeFile("/etc/config/document", document + end);
  test::registerAddOn("Movie", test::writeScript("/etc/config/addon",
                                                 "for file; do :; done\n"
                                                 "cat /etc/config/document >\"$file\"\n"));
  velMovieInfo_ info = {};
  const int status = velGetMovieByID("abcde1", &info);
  velFreeMovieInfo(&info);
  test::removeRegistry();
  return status;
}

TEST(Document, CostsTimeAndMemoryInProportionToItsSize) {
  const long before = mostMemoryKiB();
  string entities = "<!DOCTYPE movie [<!ENTITY a0 \"aaaaaaaaaaaaaaaaaaaa\">";
  for (int i = 1; i < 60; ++i) {
    const string inner = "&a" + std::to_string(i - 1) + ";";
    entities += "<!ENTITY a" + std::to_string(i) + " \"" + inner + inner + inner + "\">";
  }
  EXPECT_EQ(movieOf(entities + "]><movie><title>&a59;", "&a59;", "</title></movie>"), 0);
  EXPECT_EQ(movieOf("<!DOCTYPE movie ", "[<![", ""), 1);
  EXPECT_EQ(movieOf("<!DOCTYPE movie [<!ENTITY x SYSTEM \"file:///dev/zero\">]><movie>&x;", "&x;",
                    "</movie>"),
            0);
  EXPECT_EQ(movieOf("<movie>", "<a>", ""), 1);
  EXPECT_EQ(movieOf("<movie>", "<genre/>", "</movie>"), 0);
  EXPECT_EQ(movieOf("<movie ", "a=\"\" ", "/>"), 0);
  EXPECT_EQ(movieOf("<movie>", "<!--", ""), 1);
  EXPECT_LT(mostMemoryKiB() - before, 8 * 30 * 1024);
}

TEST(Page, ThatHasNoEndIsNoPage) {
  const long before = mostMemoryKiB();
  std::remove("/sbin/curl");
  test::writeScript("/sbin/curl",
                    "case $* in\n"
                    "*/find*) printf '<table class=\"findList\"><td class=\"primary_photo\">"
                    "<a href=\"/title/tt1/?\"></td></tr></table>' >/var/tmp/movie_search.xxx ;;\n"
                    "*) exec yes \"<link rel='image_src' href=\\\"$(printf %01000d 0)\\\">\" ;;\n"
                    "esac\n");
  velMovie_* movies = nullptr;
  ASSERT_EQ(imdbBasicGetMovies("x", 1, &movies), 1);
  EXPECT_STREQ(movies[0].id, "tt1");
  EXPECT_STREQ(movies[0].url, "");
  velFreeMovies(movies, 1);
  EXPECT_LT(mostMemoryKiB() - before, 192 * 1024);
  std::remove("/sbin/curl");
  ASSERT_EQ(symlink("/usr/bin/curl", "/sbin/curl"), 0);
}

TEST(PageFile, IsNotWrittenThrough) {
  const char* const page = "/var/tmp/movie_get_info.xxx";
  velMovieInfo_ info = {};
  const auto fetched = [&] {
    const int status = imdbGetMovieInfo("tt9000010", &info);
    velFreeMovieInfo(&info);
    info = {};
    return status;
  };
  test::writeFile("/etc/config/kept", "kept");
  ASSERT_EQ(symlink("/etc/config/kept", page), 0);
  EXPECT_EQ(fetched(), 0);  // a link that can be removed is
  struct stat status = {};
  ASSERT_EQ(lstat(page, &status), 0);
  EXPECT_TRUE(S_ISREG(status.st_mode));

  // What a stranger plants in a folder with the sticky bit cannot be removed.
  std::remove(page);
  ASSERT_EQ(symlink("/etc/config/kept", page), 0);
  chmod("/var/tmp", 0555);
  EXPECT_EQ(fetched(), 23);
  chmod("/var/tmp", 0777);
  std::remove(page);
  ASSERT_EQ(mkfifo(page, 0666), 0);
  chmod("/var/tmp", 0555);
  EXPECT_EQ(fetched(), 23);
  chmod("/var/tmp", 0777);
  EXPECT_EQ(fetched(), 0);
  EXPECT_EQ(test::readFile("/etc/config/kept"), "kept");
}

}  // namespace
