#include "cases.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "libquilp.h"
#include "lookups.h"
#include "quilp.h"

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

constexpr char kPlainFunctions[] =
    "quilp_version quilp_reason_name quilp_request_new quilp_request_set_text "
    "quilp_request_set_number quilp_request_set_observer quilp_request_cancel quilp_request_free "
    "quilp_run quilp_answer_reason quilp_answer_sentence quilp_answer_number quilp_answer_add_on "
    "quilp_answer_milliseconds quilp_answer_count quilp_answer_size quilp_answer_value "
    "quilp_answer_role quilp_answer_text quilp_answer_json quilp_answer_free";

/// A text that an answer gives can be read.
void touch(const char* text) {
  if (text != nullptr && std::strlen(text) > 1000000) {
    std::abort();
  }
}

/// Reads and frees an answer. The reason; out of memory also where there is no answer.
int reasonOf(quilp_answer* answer, const char* element) {
  int reason = quilp_answer_reason(answer);
  touch(quilp_reason_name(quilp_answer_reason(answer)));
  touch(quilp_answer_sentence(answer));
  touch(quilp_answer_add_on(answer));
  touch(quilp_answer_json(answer));
  for (std::size_t i = 0; i < quilp_answer_count(answer); ++i) {
    touch(quilp_answer_text(answer, i, element));
    touch(quilp_answer_role(answer, i, 0));
    for (std::size_t j = 0; j < quilp_answer_size(answer, i, element); ++j) {
      touch(quilp_answer_value(answer, i, element, j));
    }
  }
  const bool isEmpty = quilp_answer_count(answer) == 0;
  const bool isFault = reason == QUILP_EXIT_STATUS || reason == QUILP_SIGNAL;
  if (quilp_answer_milliseconds(answer) < 0 || (isFault && quilp_answer_number(answer) == 0) ||
      (reason == QUILP_OK && isEmpty)) {
    reason = test::kNeverRight;
  }
  quilp_answer_free(answer);
  return reason;
}

int lookUp(quilp_lookup what, quilp_text which, const char* text, const char* element) {
  touch(quilp_version());
  quilp_request* request = quilp_request_new(what);
  const bool set = quilp_request_set_text(request, which, text) == 0;
  quilp_request_set_number(request, QUILP_DEADLINE, 60000);
  quilp_request_set_number(request, QUILP_COUNT, 2);
  quilp_request_set_observer(
      request, [](void*, quilp_event, const char* told, long) { touch(told); }, nullptr);
  const int reason = reasonOf(set ? quilp_run(request) : nullptr, element);
  quilp_request_cancel(request);
  quilp_request_free(request);
  return reason;
}

/// Every reason that a fault can have; never that somebody cancelled, or that time is over.
const std::vector<int> kFaultReasons = {
    QUILP_OK,          QUILP_NOTHING_FOUND, QUILP_CANNOT_START,
    QUILP_EXIT_STATUS, QUILP_SIGNAL,        QUILP_MALFORMED_DOCUMENT,
    QUILP_NO_NETWORK,  QUILP_OUT_OF_MEMORY, QUILP_UNKNOWN_PAGE,
    QUILP_HTTP_STATUS,  // of the built-in route, where the registry cannot be read
};

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
      {kPlainFunctions, "Movie", kFaultReasons,
       [] { return lookUp(QUILP_MOVIE_SEARCH, QUILP_KEYWORD, "Salt", "title"); }},
      {"quilp_run quilp_answer_role", "TV", kFaultReasons,
       [] { return lookUp(QUILP_TV_DETAILS, QUILP_ID, "tt0000101", "actor"); }},
      {"quilp_run quilp_answer_size", "Music", kFaultReasons,
       [] { return lookUp(QUILP_ARTIST_ALBUMS, QUILP_ARTIST, "Ann Lee", "name"); }},
      {"quilp_run quilp_answer_value", "KTV", kFaultReasons,
       [] { return lookUp(QUILP_SONG, QUILP_PATH, "/x/Ann Lee_A Song.mkv", "Title"); }},
  };
  cases.push_back({"quilp_read_name", "", {QUILP_OUT_OF_MEMORY, QUILP_CANNOT_START}, [] {
                     return reasonOf(quilp_read_name("A Row 2x01-03.mkv", QUILP_NAME_ANY),
                                     "episode");
                   }});
  for (const test::Lookup& lookup : test::lookups()) {
    cases.push_back(caseOf(lookup));
  }
  return cases;
}
