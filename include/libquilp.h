#ifndef LIBQUILP_H
#define LIBQUILP_H

/**
 * @file
 * libquilp: descriptive metadata for the media files of a storage appliance.
 *
 * For C++ only. Records hold std::string and std::vector, so a program must use the C++ standard
 * library that libquilp was built with: libstdc++ with its C++11 interface
 * (_GLIBCXX_USE_CXX11_ABI=1, the default since GCC 5). C++17 or later.
 *
 * Conventions
 *
 * 1. Strings are zero-terminated bytes in UTF-8. A null field means "not known".
 * 2. Arrays come from calloc, strings from malloc. The caller owns both and releases them with the
 *    free function for the record's type (velFreeMovies and so on). A free function releases the
 *    text fields; it does not reset pointers and does not touch lists. Free a record once.
 * 3. The caller constructs a record that holds lists, passes its address, and destroys it. The
 *    library fills it.
 * 4. Searches return the number of records: 0 for none or for a failure. Details functions return 0
 *    on success. Print functions write one XML document to standard output (the C stream `stdout`,
 *    which they do not flush).
 * 5. For an add-on, put five characters before its own identifier; the library drops them, and an
 *    identifier shorter than that becomes empty. The built-in scrapers take an identifier as their
 *    search gave it, without a prefix.
 * 6. Functions report errors by their result. A function that can throw a standard exception says
 *    so.
 * 7. Out of memory, a call fails or does less: a text field is null, an add-on is not found. A
 *    search returns 0; another function that returns a status returns 1 or what it documents. A
 *    details record holds the fields read so far. Only ProcessKeyword throws std::bad_alloc.
 * 8. Null pointers. A null text counts as an empty one, except that a null `lang` stands for the
 *    configured language and the TV functions refuse a null `id`. `error` may be null: the status
 *    is not stored then. A null record or a null place for an array is refused before anything is
 *    looked up: a search returns 0, a details function 1. Free functions, initKTVInfo and the parse
 *    functions ignore a null record. A text function given null returns its failure or does
 *    nothing.
 *
 * What the library does to your process
 *
 * - At each lookup it reads /etc/config/zorp.conf (which add-ons are enabled) and, for a language,
 *   /etc/config/catalox.conf. It keeps nothing between calls.
 * - iniparser reads both files. Out of memory, it may crash the process; the library checks for
 *   memory right before, but another thread may take it.
 * - It starts an add-on with posix_spawn and waits for it without a time limit. The add-on inherits
 *   standard input. Pages are fetched by /sbin/curl through system and popen, each within 25
 *   seconds; the page of a show's banner has no limit. Documents of the music services have 15
 *   seconds to connect at each try and no other limit.
 * - velSearchMovie and velSearchTVShows without an add-on start one thread for each result and join
 *   them all before they return.
 * - An add-on's document, and a music service's document with its headers, are temporary files
 *   under /tmp, removed before the call returns. Pages are files of fixed names under /var/tmp,
 *   which stay. Within a process, requests of one kind wait for each other; two processes must not
 *   make requests of one kind at the same time.
 * - A document or page that is not a regular file, or is larger than 64 MiB, counts as unreadable.
 * - Messages go to standard error.
 * - It must collect its own children: do not ignore SIGCHLD, and do not wait for any child (waitpid
 *   with -1) during a call. A child that you fork during a call without executing another program
 *   can keep a page's pipe open; the call then waits for that child. While a page is fetched to a
 *   file, SIGINT and SIGQUIT are ignored, as system does.
 *
 * Thread safety: every function may be called from several threads at once, each with records of
 * its own.
 */

#include <cstddef>
#include <string>
#include <vector>

#if defined(__GNUC__)
#define QUILP_API __attribute__((visibility("default")))
#else
#define QUILP_API
#endif

/* ---- Movies -------------------------------------------------------------------------------- */

/** One search result. */
struct velMovie_ {
  char* url;     /**< address of the poster picture */
  char* id;      /**< identifier of the title, for velGetMovieByID */
  char* title;   /**< title, as the page or document has it: the built-in search keeps entities */
  char* year;    /**< year of release, as text; empty when the page names none */
  char* outline; /**< short plot outline */
};

/** The details of one title. `actor` and `role` are parallel. */
struct velMovieInfo_ {
  char* title;                       /**< title */
  char* year;                        /**< year of release, as text */
  char* rating;                      /**< user rating, such as 7.5 */
  char* id;                          /**< identifier */
  std::vector<std::string> director; /**< directors */
  char* mpaa;                        /**< content rating */
  char* company;                     /**< production company */
  std::vector<std::string> country;  /**< countries; never printed */
  std::vector<std::string> genre;    /**< genres */
  std::vector<std::string> actor;    /**< actors */
  std::vector<std::string> role;     /**< the role of the actor at the same index */
  char* outline;                     /**< short outline */
  char* plot;                        /**< longer plot text */
  char* poster;                      /**< address of the poster picture */
};

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"  // unmangled names, C++ types
#endif

extern "C" {

/**
 * Searches movies by keyword, which may be the name of a video release (see ProcessKeyword).
 *
 * @param keyword  what to look for
 * @param count    wanted number of results; an add-on may give more, and all of them are returned
 * @param movies   receives an array to release with velFreeMovies, even if the array is empty.
 *                 Some failures leave it untouched: set it to null before the call, and release
 *                 the array after any result.
 * @param error    receives an add-on's exit status if it is not 0 (1 if a signal ended the add-on);
 *                 otherwise left untouched
 * @return         number of records in the array; 0 for none or failure. The built-in search
 *                 returns 1, with an empty record, if the site reports no results.
 */
QUILP_API int velSearchMovie(const char* keyword, int count, velMovie_** movies, int* error);

/**
 * Prints what velSearchMovie finds as a "movielist" document.
 *
 * @return 0 after printing, also for an empty record. If velSearchMovie returns 0, it prints
 *         nothing and returns the add-on's exit status, or 0 without an add-on.
 */
QUILP_API int velPrintSearchMovie(const char* keyword, int count);

/**
 * Fills `info` with the details of one title. Sets the text fields to null first. An add-on's
 * values are appended to the lists of `info`; the built-in scraper clears the lists first.
 *
 * @return 0 on success. With an add-on, its exit status, or 1 if it wrote no readable document.
 *         Without an add-on, the exit status of the curl process that fetched the page.
 * @throws std::logic_error   if an add-on names an actor without a role
 * @throws std::out_of_range  if the site's page has a plot section without its closing link
 *         In both cases `info` holds the fields read so far.
 */
QUILP_API int velGetMovieByID(const char* id, velMovieInfo_* info);

/**
 * Prints what velGetMovieByID finds as a "movie" document.
 *
 * @return 0 after printing; 1 on any failure, and then nothing is printed
 * @throws what velGetMovieByID throws
 */
QUILP_API int velPrintMovieByID(const char* id);

/** Releases `count` records and the array; with a count below 1, only the array. Ignores null. */
QUILP_API void velFreeMovies(velMovie_* movies, int count);

/** Releases the text fields. Does not reset them, does not touch the lists, ignores null. */
QUILP_API void velFreeMovieInfo(velMovieInfo_* info);

/**
 * The built-in search that velSearchMovie uses: results of the site's find page, each with the
 * poster address and the outline of its title page (empty strings if the page has none).
 *
 * @param keyword  percent-encoded, as ProcessKeyword(…, 1) returns it. A keyword with a single
 *                 quote fails, and curl is not run.
 * @param count    wanted number of results; one row of the page is read even if this is below 1
 * @param movies   as for velSearchMovie
 * @return         number of records in the array; 0 for failure
 */
QUILP_API int imdbBasicGetMovies(const char* keyword, int count, velMovie_** movies);

/** Like imdbBasicGetMovies, but searches alternate titles; 0 if the site reports no results. */
QUILP_API int imdbGetMovies(const char* keyword, int count, velMovie_** movies);

/**
 * The built-in scraper that velGetMovieByID uses. Set the text fields to null before the call: if
 * the page cannot be fetched, the record stays untouched.
 *
 * @return the exit status of curl: 0 if it fetched a page, whatever the page holds. 2 for an
 *         identifier with a single quote; curl is not run then.
 * @throws std::out_of_range  like velGetMovieByID
 */
QUILP_API int imdbGetMovieInfo(const char* id, velMovieInfo_* info);

}  // extern "C"

/* ---- TV shows ------------------------------------------------------------------------------ */

/** One search result. */
struct velTVShow {
  char* id;             /**< identifier of the show, for velGetTVShowByID */
  char* title;          /**< title, as the page or document has it */
  char* first_air_date; /**< date or year, as text; empty when the page names none */
  char* poster;         /**< address of the poster picture */
  char* outline;        /**< short plot outline */
};

/** The details of one show. `actor_names` and `actor_roles` are parallel. */
struct velTVShowInfo {
  char* id;                             /**< identifier */
  char* title;                          /**< title */
  char* first_air_date;                 /**< YYYY-MM-DD */
  char* last_air_date;                  /**< YYYY-MM-DD; null for a running show */
  char* poster;                         /**< address of the poster picture */
  char* rating;                         /**< user rating, such as 8.5 */
  char* content_rating;                 /**< content (age) rating; add-ons only */
  char* banner;                         /**< address of a banner picture */
  char* outline;                        /**< plot outline */
  char* duration;                       /**< running time of an episode, as text */
  std::vector<std::string> directors;   /**< neither filled nor printed */
  std::vector<std::string> creators;    /**< creators */
  std::vector<std::string> networks;    /**< broadcasting networks; add-ons only */
  std::vector<std::string> genres;      /**< genres */
  std::vector<std::string> actor_names; /**< actors */
  std::vector<std::string> actor_roles; /**< the role of the actor at the same index */
};

/** The details of one episode. `actor_names` and `actor_roles` are parallel. */
struct velTVEpisode {
  char* id;                             /**< the episode's own identifier */
  char* title;                          /**< title */
  char* air_date;                       /**< YYYY-MM-DD */
  char* season_number;                  /**< the requested season; null for 0 from an add-on */
  char* episode_number;                 /**< the requested episode; null as `season_number` */
  char* thumbnail;                      /**< address of a still picture */
  char* outline;                        /**< plot outline */
  char* rating;                         /**< user rating */
  std::vector<std::string> directors;   /**< directors */
  std::vector<std::string> genres;      /**< genres */
  std::vector<std::string> actor_names; /**< actors */
  std::vector<std::string> actor_roles; /**< the role of the actor at the same index */
};

extern "C" {

/**
 * Searches TV shows by keyword, which may be the name of a video release (see ProcessKeyword).
 *
 * @param keyword  what to look for
 * @param count    wanted number of results; an add-on may give more, and all of them are returned
 * @param lang     language for an add-on; null for the one configured for it (see getDefaultLang)
 * @param shows    receives an array to release with velFreeTVShows, even if the array is empty.
 *                 Some failures leave it untouched: set it to null before the call, and release
 *                 the array after any result.
 * @param error    receives an add-on's exit status if it is not 0 (1 if a signal ended the add-on);
 *                 otherwise left untouched
 * @return         number of records in the array; 0 for none or failure. The built-in search
 *                 returns 1, with an empty record, if the site reports no results; other
 *                 records have an empty poster or outline if the site has none.
 */
QUILP_API int velSearchTVShows(const char* keyword, int count, const char* lang, velTVShow** shows,
                               int* error);

/**
 * Prints what velSearchTVShows finds as a "tvshowlist" document, its values in CDATA sections.
 *
 * @return 0 after printing, also for an empty record. If velSearchTVShows returns 0, it prints
 *         nothing and returns the add-on's exit status, or 0 without an add-on.
 */
QUILP_API int velPrintSearchTVShows(const char* keyword, int count, const char* lang);

/**
 * Fills `info` with the details of one show. Sets the text fields to null first. An add-on's values
 * are appended to the lists of `info`; the built-in scraper clears genres and cast first.
 *
 * If the built-in scraper finds an actor without a role, the lists differ in length, and the
 * indexes after that actor no longer match.
 *
 * @param id    identifier of the show; null is refused
 * @param lang  language for an add-on; null for the one configured for it
 * @param info  record to fill; null is refused
 * @return      0 on success; 1 if an argument is refused, if an add-on wrote no readable document,
 *              or if the page could not be fetched; an add-on's exit status if it is not 0
 * @throws std::out_of_range  if the site's page has a cast row too short to hold a name; `info`
 *         then holds the fields read so far
 */
QUILP_API int velGetTVShowByID(const char* id, const char* lang, velTVShowInfo* info);

/**
 * Prints what velGetTVShowByID finds as a "tvshow" document, its values in CDATA sections. An empty
 * list becomes one empty element. So does a cast whose names and roles differ in number.
 *
 * @return 0 after printing; otherwise the result of velGetTVShowByID, and nothing is printed
 * @throws what velGetTVShowByID throws
 */
QUILP_API int velPrintTVShowByID(const char* id, const char* lang);

/**
 * Fills `info` with the details of one episode, as velGetTVShowByID does for a show.
 *
 * @param id       identifier of the show
 * @param season   number of the season
 * @param episode  number of the episode in its season
 * @param lang     language for an add-on; null for the one configured for it
 * @param info     record to fill
 * @return         like velGetTVShowByID. Without an add-on: -1 if the season's list could not be
 *                 fetched or lacks the episode; 1 if the episode's page could not be fetched, and
 *                 `id` is then set.
 * @throws what velGetTVShowByID throws
 */
QUILP_API int velGetTVEpisode(const char* id, int season, int episode, const char* lang,
                              velTVEpisode* info);

/**
 * Prints what velGetTVEpisode finds as a "tvepisode" document, like velPrintTVShowByID. Season and
 * episode are printed as requested, even if they are 0.
 */
QUILP_API int velPrintTVEpisode(const char* id, int season, int episode, const char* lang);

/** Releases `count` records and the array; with a count below 1, only the array. Ignores null. */
QUILP_API void velFreeTVShows(velTVShow* shows, int count);

/** Releases the text fields. Does not reset them, does not touch the lists, ignores null. */
QUILP_API void velFreeTVShowInfo(velTVShowInfo* info);

/** Like velFreeTVShowInfo. */
QUILP_API void velFreeTVEpisode(velTVEpisode* info);

/* ---- Music --------------------------------------------------------------------------------- */

/** One album. */
struct velAlbum_ {
  char* name;        /**< title */
  char* artist;      /**< artist; filled by the album search only */
  char* releasedate; /**< date of the first release, as text; the built-in search leaves it empty */
  char* image;       /**< address of a cover picture; empty when the built-in search finds none */
};

/** One picture of an artist. */
struct velThumb_ {
  char* url; /**< address of the picture; null when an add-on names none */
};

extern "C" {

/**
 * Searches albums by title.
 *
 * @param album   what to look for
 * @param artist  artist of the albums; null or empty for any artist
 * @param count   wanted number of results; an add-on may give more, and all of them are returned
 * @param albums  receives an array to release with velFreeAlbums, even if the array is empty.
 *                Some failures leave it untouched: set it to null before the call, and release the
 *                array after any result.
 * @return        number of records in the array; 0 for none or failure, also of an add-on. The
 *                built-in search returns a negative count unchanged, with an empty array, if
 *                the service has results.
 */
QUILP_API int velSearchAlbum(const char* album, const char* artist, int count, velAlbum_** albums);

/**
 * Lists the albums of an artist like velSearchAlbum, but leaves out the artist's name. The built-in
 * search skips those of the service's first `count` releases that are not albums.
 *
 * @param artist  artist of the albums
 * @param count   number of releases to request from the service; an add-on may give more
 * @param albums  like velSearchAlbum. If an artwork document cannot be read, the call stops: it
 *                returns 0, but stores the array with the records filled so far. To release it,
 *                count the records up to and including the first whose `image` is null.
 * @return        number of records in the array; 0 for none or failure
 */
QUILP_API int velGetAlbumByArtist(const char* artist, int count, velAlbum_** albums);

/**
 * Lists pictures of an artist.
 *
 * @param artist  artist of the pictures
 * @param count   wanted number of pictures; an add-on may give more
 * @param thumbs  receives an array to release with velFreeThumbs, even if the array is empty.
 *                Some failures leave it untouched: set it to null before the call, and release the
 *                array after any result.
 * @return        number of records in the array; 0 for none or failure
 */
QUILP_API int velGetArtistThumbnail(const char* artist, int count, velThumb_** thumbs);

/**
 * Print what velSearchAlbum, velGetAlbumByArtist and velGetArtistThumbnail find, as an "albumlist"
 * or "artistthumbnail" document. An add-on's document is copied unchanged. These functions also use
 * an add-on without the library's class (see zorp.conf(5)).
 *
 * @return 0 after printing, also for an add-on's empty document; 1 if the services have nothing or
 *         an add-on failed, and then nothing is printed
 * @{
 */
QUILP_API int velPrintSearchAlbum(const char* album, const char* artist, int count);
QUILP_API int velPrintGetAlbumByArtist(const char* artist, int count);
QUILP_API int velPrintGetArtistThumbnail(const char* artist, int count);
/** @} */

/**
 * Releases `count` records and the array; with a count below 1, only the array. Ignores null.
 * @{
 */
QUILP_API void velFreeAlbums(velAlbum_* albums, int count);
QUILP_API void velFreeThumbs(velThumb_* thumbs, int count);
/** @} */

}  // extern "C"

/* ---- Karaoke ------------------------------------------------------------------------------- */

/** A pattern to search a title by. */
struct TitleSearchPattern_t {
  std::string text; /**< the title; empty when an add-on gave the number of words only */
  int wordCount;    /**< every CJK character counts, and every run of ASCII letters */
  int kind;         /**< always 1 */
};

/** A pattern to search an artist by. For callers; the library creates none. */
struct ArtistSearchPattern_t {
  std::string text; /**< the name */
  int wordCount;    /**< as TitleSearchPattern_t counts */
  int kind;         /**< as the caller sets it */
};

/** One singer. */
struct ArtistData_t {
  std::string name; /**< as in the file name, with blanks at its ends */
  int gender;       /**< code of g_GenderCode; 0 for none */
  int nationality;  /**< an add-on's code, which the library does not translate; 0 for none */
  std::vector<ArtistSearchPattern_t> patterns; /**< left empty */
};

/** Facts of a song, from its file name or an add-on. The caller constructs and destroys it. */
struct KTV_ExtraData_t {
  int language;      /**< code of g_LanguageCode; -1 not known, 0 a bracket that is no language */
  int reserved1;     /**< set to -1, otherwise untouched */
  int gain;          /**< from an add-on; -1 not known */
  int reserved2;     /**< set to -1, otherwise untouched */
  int audioTrack;    /**< code of g_VocalTrackCode; -1 not known, 0 a bracket that is no track */
  std::string title; /**< song title */
  std::vector<ArtistData_t> artists;               /**< singers, in order */
  std::vector<std::string> genres;                 /**< genres, in order */
  void* reserved3[3];                              /**< the caller's, never touched */
  std::vector<TitleSearchPattern_t> titlePatterns; /**< patterns to search the title by */
};

/** A language and its markers: Latin, traditional and simplified Chinese, with their lengths in
 *  bytes. */
struct KaraokeLanguageEntry {
  const char* name;    /**< English name */
  const char* marker1; /**< Latin marker, with its brackets */
  int length1;         /**< length of `marker1` */
  const char* marker2; /**< traditional Chinese marker */
  int length2;         /**< length of `marker2` */
  const char* marker3; /**< simplified Chinese marker */
  int length3;         /**< length of `marker3` */
  int code;            /**< 0 ends the table */
};

/** A marker in a file name, and its code. */
struct KaraokeCodeEntry {
  int code;           /**< as in the records */
  const char* marker; /**< with its brackets */
  int length;         /**< in bytes; 0 ends the table */
};

/** A separator between two singers. */
struct SeparatorEntry {
  char text[8]; /**< the separator */
  int length;   /**< in bytes; 0 ends the table */
};

/** A country of ISO 3166-1. */
struct CountryEntry {
  const char* alpha2; /**< code of two letters; null ends the table */
  const char* alpha3; /**< code of three letters */
  int numeric;        /**< code of up to three digits */
  const char* name;   /**< short English name; some lack a blank, on purpose */
};

extern "C" {

/**
 * Languages of the title part. The lengths are 0 until the library reads the first "[" of a title
 * part, which is safe in several threads. To fill them, call BasicGetKTVInfo("[", &info).
 */
QUILP_API extern KaraokeLanguageEntry g_LanguageCode[9];

/** Vocal tracks: markers of the title part. */
QUILP_API extern const KaraokeCodeEntry g_VocalTrackCode[6];

/** Genders: markers of the artist part. */
QUILP_API extern const KaraokeCodeEntry g_GenderCode[4];

/** Separators of the artist part, in the order of matching. */
QUILP_API extern const SeparatorEntry s_SeparateStr[5];

/** Countries, sorted by name; for callers; the library does not read it. */
QUILP_API extern const CountryEntry g_CountryCode[250];

/** Abbreviations of the months; for callers; the library does not read it. */
QUILP_API extern const char* const year_en[12];

/** A buffer for callers; the library neither reads nor writes it. */
QUILP_API extern char gSearchKey[512];

/**
 * Describes a song file from an add-on's document or, without an add-on, from its name, as
 * BasicGetKTVInfo does. The file need not exist.
 *
 * Sets the numbers to -1 first. Replaces the title if there is one; appends to the lists.
 *
 * @param path  path of the song file; an add-on gets it unchanged, and null as an empty one
 * @param info  record to fill
 * @return      0 on success; 1 if the add-on failed or wrote no readable document (only the numbers
 *              are changed then), if `info` is null, or out of memory
 */
QUILP_API int velGetKTVInfo(const char* path, KTV_ExtraData_t* info);

/** Sets the five numbers of the record to -1; strings and lists are not touched. */
QUILP_API void initKTVInfo(KTV_ExtraData_t* info);

/**
 * Fills the record from a file name: ARTISTS_TITLE.EXTENSION, or TITLE.EXTENSION. Facts that
 * the name does not hold stay unchanged; lists are appended to.
 *
 * @param name  without folders; cut to 1023 bytes, at a character's border, then at its last dot
 * @param info  record to fill
 * @return      0, or 1 out of memory; with a null argument, does nothing and returns 0
 */
QUILP_API int BasicGetKTVInfo(const char* name, KTV_ExtraData_t* info);

/**
 * Reads a title part: the title, at most 1023 bytes of it, then markers of language and vocal
 * track, of which the first of each kind counts. A title becomes a pattern too. A bracket that
 * is no marker sets language and vocal track to 0, unless they were found before it.
 *
 * @return 0, or 1 out of memory; with a null argument, does nothing and returns 0
 */
QUILP_API int parseTitleAndLangAndVocal(const unsigned char* text, KTV_ExtraData_t* info);

/**
 * Reads an artist part: names of at most 1023 bytes each, with a separator between them and an
 * optional gender marker after each. After a bracket, text up to the next separator is skipped.
 * Appends to `artists`.
 *
 * @return 0, or 1 out of memory; with a null argument, does nothing and returns 0
 */
QUILP_API int parseArtist(const unsigned char* text, KTV_ExtraData_t* info);

}  // extern "C"

/* ---- Text ---------------------------------------------------------------------------------- */

/** Text for each character code, for replace_string; null from 251 on. */
QUILP_API extern const char* const html_utf8[256];

/** Lower-case hexadecimal digit of the low four bits. */
QUILP_API char to_hex(char value);

/** The value of a hexadecimal digit of either case; 16 for any other character. */
QUILP_API char char2hex(char digit);

/**
 * Writes every byte as "%" and two hexadecimal digits. A byte below 0x10 has one digit, and the
 * text ends there.
 *
 * @param source       bytes to encode
 * @param sourceLength how many; at least 1, at most a third of destinationSize, at most 65535
 * @param destination  receives the encoded text and its terminator; must have room for
 *                     destinationSize + 1 bytes
 * @param destinationSize  a source of exactly a third puts the terminator at this index
 * @return             0, or -1 when the length is refused (nothing is written then)
 */
QUILP_API int StringConvert2PercentString(char* source, int sourceLength, char* destination,
                                          int destinationSize);

/**
 * Replaces numeric references of two digits ("&#x21;", "&#33;") by the text of html_utf8, drops
 * those of one digit, then carriage returns and line feeds. Any other reference stays.
 */
QUILP_API void replace_string(std::string* text);

/**
 * Decodes named and numeric character references into UTF-8. Other text stays.
 *
 * @param dest  receives the decoded text; a buffer as large as the source with its terminator
 *              is enough. May be the source itself.
 * @param src   text to decode; null to decode `dest` in place
 * @return      length of the decoded text in bytes, terminator not counted
 */
QUILP_API size_t decode_html_entities_utf8(char* dest, const char* src);

/** Removes white space at both ends, then every "&nbsp;", then every "&raquo;". White space alone
 *  is reduced to its last byte. Returns its argument. */
QUILP_API std::string& removeEmptyChar(std::string& text);

/**
 * Cuts the name of a video release down to its title words: brackets, release tags, episode
 * numbers, and a year with the text after it, are removed.
 *
 * @param keyword  the name, without its file extension; null counts as empty
 * @param mode     0: words joined by single blanks; 1: the same, percent-encoded for a URL
 * @throws std::bad_alloc  out of memory
 */
QUILP_API std::string ProcessKeyword(const char* keyword, int mode);

/**
 * Looks up the language configured for an add-on; "en" if there is none.
 *
 * @param lang   receives a code of at most three characters, in a buffer of the calling thread that
 *               the thread's next call overwrites
 * @param shell  path of the add-on; its base name without extension is the section's name
 */
QUILP_API void getDefaultLang(const char** lang, char* shell);

}  // extern "C"

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

namespace libquilp {

/**
 * Percent-encodes all bytes except letters, digits and - + _ . ~ / : ? & = \ "; a blank becomes
 * "+". The caller frees the result; null out of memory.
 */
QUILP_API char* url_encode(char* text);

/** Decodes "+", and "%" with two characters (unchecked). The caller frees the result. */
QUILP_API char* url_decode(char* text);

/** Like the global to_hex. */
QUILP_API char to_hex(char value);

/** Value of a hexadecimal digit, unchecked: "g" gives 16. */
QUILP_API char from_hex(char digit);

}  // namespace libquilp

#endif  // LIBQUILP_H
