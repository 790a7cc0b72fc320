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

/// A details lookup of the document behind `start`, in which `repeated` fills 8 MiB.
int movieOf(const string& start, const string& repeated, const string& end) {
  string document = start;
  while (document.size() < 8U << 20) {
    document += repeated;
  }
  test::answerWith("Movie", document + end);
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
