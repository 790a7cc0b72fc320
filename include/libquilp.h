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
 *    free function of the record. It releases the text fields; it does not reset pointers and does
 *    not touch lists. Free a record once.
 * 3. The caller constructs and destroys records that hold lists, and passes their address. The
 *    library fills them.
 * 4. Searches return the number of records: 0 for none or for a failure. Details functions return 0
 *    on success. Print functions write one XML document to standard output (the C stream `stdout`,
 *    which they do not flush).
 * 5. For an add-on, put five characters before its own identifier; the library drops them, and an
 *    identifier shorter than that becomes empty. The built-in scrapers take an identifier as their
 *    search gave it, without a prefix.
 * 6. Functions report errors by their result. Where a standard exception can leave one, it says so.
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
 * @param count    how many results are wanted; an add-on may give more, all of which are returned
 * @param movies   receives an array for velFreeMovies, also when it holds nothing; left untouched
 *                 by some failures. Set it to null before the call, and release what it holds
 *                 after.
 * @param error    receives an add-on's exit status when that is not 0 (1 when a signal ended it);
 *                 otherwise left untouched
 * @return         how many records are in the array; 0 for none or failure. The built-in search
 *                 gives 1, with an empty record, when the site says that it has no results.
 */
QUILP_API int velSearchMovie(const char* keyword, int count, velMovie_** movies, int* error);

/**
 * Prints what velSearchMovie finds as a "movielist" document.
 *
 * @return 0 after printing, an empty record included; when velSearchMovie gives 0, nothing is
 *         printed and the result is the add-on's exit status, or 0 if there is none
 */
QUILP_API int velPrintSearchMovie(const char* keyword, int count);

/**
 * Fills `info` with the details of one title. Text fields are set to null first. An add-on's lists
 * are appended to what `info` holds; the built-in scraper clears the lists first.
 *
 * @return 0 on success; an add-on's exit status, or 1 when it wrote no readable document; without
 *         an add-on the exit status of curl, which fetched the page
 * @throws std::logic_error   when an add-on names an actor without a role
 * @throws std::out_of_range  when the site's page has a plot section without its closing link
 *         In both cases `info` holds the fields read so far.
 */
QUILP_API int velGetMovieByID(const char* id, velMovieInfo_* info);

/**
 * Prints what velGetMovieByID finds as a "movie" document.
 *
 * @return 0 after printing, 1 on any failure, with nothing printed
 * @throws what velGetMovieByID throws
 */
QUILP_API int velPrintMovieByID(const char* id);

/** Releases `count` records and the array. Null is ignored; a count below 1 releases the array. */
QUILP_API void velFreeMovies(velMovie_* movies, int count);

/** Releases the text fields, neither resetting them nor touching the lists. Null is ignored. */
QUILP_API void velFreeMovieInfo(velMovieInfo_* info);

/**
 * The built-in search behind velSearchMovie: results of the site's find page, each with poster
 * address and outline from its title page (empty strings where there is none).
 *
 * @param keyword  percent-encoded, as ProcessKeyword(…, 1) gives it. One that holds a single quote
 *                 fails, and curl is not run.
 * @param count    how many results are wanted; one row of the page is read even when that is none
 * @param movies   as for velSearchMovie
 * @return         how many records are in the array; 0 for failure
 */
QUILP_API int imdbBasicGetMovies(const char* keyword, int count, velMovie_** movies);

/** As imdbBasicGetMovies, but among the site's alternate titles; 0 when the site has no results. */
QUILP_API int imdbGetMovies(const char* keyword, int count, velMovie_** movies);

/**
 * The built-in scraper behind velGetMovieByID. Set the text fields to null before: a page that
 * cannot be fetched leaves the record untouched.
 *
 * @return curl's exit status, 0 when it fetched a page, whatever the page holds; 2 for an
 *         identifier with a single quote, for which curl is not run
 * @throws std::out_of_range  as velGetMovieByID
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
 * @param count    how many results are wanted; an add-on may give more, all of which are returned
 * @param lang     language for an add-on; null for the one configured for it (see getDefaultLang)
 * @param shows    receives an array for velFreeTVShows, also when it holds nothing; left untouched
 *                 by some failures. Set it to null before the call, and release what it holds
 *                 after.
 * @param error    receives an add-on's exit status when that is not 0 (1 when a signal ended it);
 *                 otherwise left untouched
 * @return         how many records are in the array; 0 for none or failure. The built-in search
 *                 gives 1, with an empty record, when the site says that it has no results; the
 *                 records of rows have an empty poster or outline where there is none.
 */
QUILP_API int velSearchTVShows(const char* keyword, int count, const char* lang, velTVShow** shows,
                               int* error);

/**
 * Prints what velSearchTVShows finds as a "tvshowlist" document, its values in CDATA sections.
 *
 * @return 0 after printing, an empty record included; when velSearchTVShows gives 0, nothing is
 *         printed and the result is the add-on's exit status, or 0 if there is none
 */
QUILP_API int velPrintSearchTVShows(const char* keyword, int count, const char* lang);

/**
 * Fills `info` with the details of one show. Text fields are set to null first. An add-on's lists
 * are appended to what `info` holds; the built-in scraper clears genres and cast first.
 *
 * The built-in scraper may find an actor without a role: the lists then differ in length, and
 * indexes after that actor no longer match.
 *
 * @param id    identifier of the show; null is refused
 * @param lang  language for an add-on; null for the one configured for it
 * @param info  record of the caller's; null is refused
 * @return      0 on success; 1 when refused, when an add-on wrote no readable document, or when the
 *              page could not be fetched; an add-on's exit status when that is not 0
 * @throws std::out_of_range  when the site's page has a cast row too short to hold a name;
 *         `info` holds the fields read so far
 */
QUILP_API int velGetTVShowByID(const char* id, const char* lang, velTVShowInfo* info);

/**
 * Prints what velGetTVShowByID finds as a "tvshow" document, its values in CDATA sections. An empty
 * list is one empty element, and so is a cast whose names and roles differ in number.
 *
 * @return 0 after printing; otherwise the result of velGetTVShowByID, with nothing printed
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
 * @param info     record of the caller's
 * @return         as velGetTVShowByID; without an add-on -1 when the list of the season could not
 *                 be fetched or does not have the episode, and 1 when the episode's page could not
 *                 be fetched, with `id` set
 * @throws what velGetTVShowByID throws
 */
QUILP_API int velGetTVEpisode(const char* id, int season, int episode, const char* lang,
                              velTVEpisode* info);

/**
 * Prints what velGetTVEpisode finds as a "tvepisode" document, as velPrintTVShowByID does. Season
 * and episode are printed as requested, 0 included.
 */
QUILP_API int velPrintTVEpisode(const char* id, int season, int episode, const char* lang);

/** Releases `count` records and the array. Null is ignored; a count below 1 releases the array. */
QUILP_API void velFreeTVShows(velTVShow* shows, int count);

/** Releases the text fields, neither resetting them nor touching the lists. Null is ignored. */
QUILP_API void velFreeTVShowInfo(velTVShowInfo* info);

/** As velFreeTVShowInfo. */
QUILP_API void velFreeTVEpisode(velTVEpisode* info);

/* ---- Music --------------------------------------------------------------------------------- */

/** One album. */
struct velAlbum_ {
  char* name;        /**< title */
  char* artist;      /**< artist; filled by the album search only */
  char* releasedate; /**< date of the first release, as text; the built-in search leaves it empty */
  char*
      image; /**< address of a cover picture; the built-in search gives an empty string for none */
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
 * @param count   how many results are wanted; an add-on may give more, all of which are returned
 * @param albums  receives an array for velFreeAlbums, also when it holds nothing; left untouched by
 *                some failures. Set it to null before the call, and release what it holds after.
 * @return        how many records are in the array; 0 for none or failure, an add-on's too. The
 *                built-in search returns a negative count unchanged, with an empty array, if
 *                the service has results.
 */
QUILP_API int velSearchAlbum(const char* album, const char* artist, int count, velAlbum_** albums);

/**
 * Lists the albums of an artist: as velSearchAlbum, but without the artist's name. Of the service's
 * first `count` releases, those that are no albums are left out.
 *
 * @param artist  artist of the albums
 * @param count   how many releases to ask the service for; an add-on may give more
 * @param albums  as for velSearchAlbum. When an artwork document cannot be read, the listing is
 *                abandoned: the result is 0, but the array is stored with the records filled so
 *                far. To release it, count the records up to and including the first whose
 *                `image` is null.
 * @return        how many records are in the array; 0 for none or failure
 */
QUILP_API int velGetAlbumByArtist(const char* artist, int count, velAlbum_** albums);

/**
 * Lists pictures of an artist.
 *
 * @param artist  artist of the pictures
 * @param count   how many are wanted; an add-on may give more
 * @param thumbs  receives an array for velFreeThumbs, also when it holds nothing; left untouched by
 *                some failures. Set it to null before the call, and release what it holds after.
 * @return        how many records are in the array; 0 for none or failure
 */
QUILP_API int velGetArtistThumbnail(const char* artist, int count, velThumb_** thumbs);

/**
 * Print what velSearchAlbum, velGetAlbumByArtist and velGetArtistThumbnail find, as an "albumlist"
 * or "artistthumbnail" document. An add-on's document is copied as it is, and an add-on without the
 * library's class serves these functions too.
 *
 * @return 0 after printing, an add-on's empty document included; 1 when the services have nothing
 *         or an add-on failed, with nothing printed
 * @{
 */
QUILP_API int velPrintSearchAlbum(const char* album, const char* artist, int count);
QUILP_API int velPrintGetAlbumByArtist(const char* artist, int count);
QUILP_API int velPrintGetArtistThumbnail(const char* artist, int count);
/** @} */

/**
 * Releases `count` records and the array. Null is ignored; a count below 1 releases the array.
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
 * @param info  record of the caller's
 * @return      0 on success; 1 when the add-on failed or wrote no readable document, with only
 *              the numbers changed, when `info` is null, or when memory runs out
 */
QUILP_API int velGetKTVInfo(const char* path, KTV_ExtraData_t* info);

/** Sets the five numbers of the record to -1; strings and lists are not touched. */
QUILP_API void initKTVInfo(KTV_ExtraData_t* info);

/**
 * Fills the record from a file name: ARTISTS_TITLE.EXTENSION, or TITLE.EXTENSION. Facts that
 * the name does not hold stay unchanged; lists are appended to.
 *
 * @param name  without folders; cut to 1023 bytes, at a character's border, then at its last dot
 * @param info  record of the caller's
 * @return      0, or 1 when memory runs out; a null argument does nothing
 */
QUILP_API int BasicGetKTVInfo(const char* name, KTV_ExtraData_t* info);

/**
 * Reads a title part: the title, at most 1023 bytes of it, then markers of language and vocal
 * track, of which the first of each kind counts. A title becomes a pattern too. A bracket that
 * is no marker sets language and vocal track to 0, unless they were found before it.
 *
 * @return 0, or 1 when memory runs out; a null argument does nothing
 */
QUILP_API int parseTitleAndLangAndVocal(const unsigned char* text, KTV_ExtraData_t* info);

/**
 * Reads an artist part: names of at most 1023 bytes each, with a separator between them and an
 * optional gender marker after each. After a bracket, text up to the next separator is skipped.
 * Appends to `artists`.
 *
 * @return 0, or 1 when memory runs out; a null argument does nothing
 */
QUILP_API int parseArtist(const unsigned char* text, KTV_ExtraData_t* info);

}  // extern "C"

/* ---- Text ---------------------------------------------------------------------------------- */

/** Text for a character code, as replace_string uses it; null from 251 on. */
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
 * @param dest  receives the decoded text; as large as the source with its terminator is enough.
 *              May be the source itself.
 * @param src   text to decode; null for decoding `dest` in place
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
 * @throws std::bad_alloc  when memory runs out
 */
QUILP_API std::string ProcessKeyword(const char* keyword, int mode);

/**
 * The language configured for an add-on, "en" when there is none.
 *
 * @param lang   receives a code of at most three characters, in storage of the calling thread that
 *               its next call overwrites
 * @param shell  path of the add-on; its base name without extension is the section's name
 */
QUILP_API void getDefaultLang(const char** lang, char* shell);

}  // extern "C"

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

namespace libquilp {

/**
 * Percent-encodes all but letters, digits and - + _ . ~ / : ? & = \ "; a blank becomes "+".
 * The caller frees the result; null when memory runs out.
 */
QUILP_API char* url_encode(char* text);

/** Decodes "+" and "%" with two characters, which are not checked. The caller frees the result. */
QUILP_API char* url_decode(char* text);

/** As the global to_hex. */
QUILP_API char to_hex(char value);

/** Value of a hexadecimal digit, which is not checked: "g" gives 16. */
QUILP_API char from_hex(char digit);

}  // namespace libquilp

#endif  // LIBQUILP_H
