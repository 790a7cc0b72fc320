#include "cases.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "libquilp.h"
#include "lookups.h"

namespace {

/// Standard output is a file. Whatever is there must be whole, and nothing after a failure.
bool printedRight(int result) {
  std::fflush(stdout);
  const off_t size = lseek(STDOUT_FILENO, 0, SEEK_END);
  char end[3] = {};
  const bool whole = size == 0 || (pread(STDOUT_FILENO, end, 2, size - 2) == 2 &&
                                   (std::strcmp(end, ">\n") == 0 || std::strcmp(end, "\n\n") == 0));
  const bool emptied = ftruncate(STDOUT_FILENO, 0) == 0 && lseek(STDOUT_FILENO, 0, SEEK_SET) == 0;
  return emptied && whole && (result == 0 || size == 0);
}

FaultCase caseOf(const test::Lookup& lookup) {
  return {lookup.function, lookup.type, lookup.failures, [&lookup] {
            test::Answer answer;
            lookup.run(lookup.usual, answer, false);
            const bool prints = lookup.kind == test::Kind::kPrints;
            return !prints || printedRight(answer.result) ? answer.result : test::kNeverRight;
          }};
}

constexpr char kSong[] = "Ann Lee, the first singer[F]&Bo[M] or A title that is long enough[E][R]";

int parse(int (*parse)(const unsigned char*, KTV_ExtraData_t*)) {
  KTV_ExtraData_t info = {};
  return parse(reinterpret_cast<const unsigned char*>(kSong), &info);
}

int freeAll() {
  velFreeMovies(static_cast<velMovie_*>(std::calloc(1, sizeof(velMovie_))), 1);
  velFreeTVShows(static_cast<velTVShow*>(std::calloc(1, sizeof(velTVShow))), 1);
  velFreeAlbums(static_cast<velAlbum_*>(std::calloc(1, sizeof(velAlbum_))), 1);
  velFreeThumbs(static_cast<velThumb_*>(std::calloc(1, sizeof(velThumb_))), 1);
  velFreeMovieInfo(nullptr);
  velFreeTVShowInfo(nullptr);
  velFreeTVEpisode(nullptr);
  return 0;
}

int changeText() {
  static std::string text;
  text = "  a text&nbsp;with &#x26;#33; and &#33;\r\n ";
  replace_string(&removeEmptyChar(text));
  static char room[256] = "&amp; &#33; &none; a b";
  decode_html_entities_utf8(room, nullptr);
  StringConvert2PercentString(text.data(), 3, room, 200);
  KTV_ExtraData_t info = {};
  initKTVInfo(&info);
  const bool right = to_hex('a') == 'a' && libquilp::to_hex('a') == 'a' && char2hex('a') == 10 &&
                     libquilp::from_hex('a') == 10;
  return right ? 0 : test::kNeverRight;
}

int codeAddress() {
  char text[] = "a b%20c&d+'";
  std::free(libquilp::url_encode(text));
  std::free(libquilp::url_decode(text));
  return 0;
}

int askLanguage() {
  static char shell[] = "/any/addon.sh";
  const char* language = nullptr;
  getDefaultLang(&language, shell);
  return std::strlen(language) < 4 ? 0 : test::kNeverRight;
}

int cleanKeyword() {
  try {
    return ProcessKeyword("[x] A.Film.With.A.Long.Name.S01E02.2011.1080p", 1).empty() ? 1 : 0;
  } catch (const std::bad_alloc&) {
    return test::kOutOfMemory;
  }
}

}  // namespace

std::vector<FaultCase> faultCases() {
  std::vector<FaultCase> cases = {
      {"parseTitleAndLangAndVocal", "", {1}, [] { return parse(parseTitleAndLangAndVocal); }},
      {"parseArtist", "", {1}, [] { return parse(parseArtist); }},
      {"ProcessKeyword", "", {test::kOutOfMemory}, cleanKeyword},
      {"getDefaultLang", "", {}, askLanguage},
      {"libquilp::url_encode(char*) libquilp::url_decode(char*)", "", {}, codeAddress},
      {"velFreeMovies velFreeTVShows velFreeAlbums velFreeThumbs velFreeMovieInfo "
       "velFreeTVShowInfo velFreeTVEpisode",
       "",
       {},
       freeAll},
      {"replace_string removeEmptyChar decode_html_entities_utf8 StringConvert2PercentString "
       "to_hex char2hex libquilp::to_hex(char) libquilp::from_hex(char) initKTVInfo",
       "",
       {},
       changeText},
  };
  for (const test::Lookup& lookup : test::lookups()) {
    cases.push_back(caseOf(lookup));
  }
  return cases;
}
