#ifndef QUILP_H
#define QUILP_H

/**
 * @file
 * libquilp: descriptive metadata for media files, as plain C. For new programs; libquilp.h stays as
 * it is. Both are in libquilp.so.
 *
 * Conventions
 *
 * 1. Strings are zero-terminated bytes in UTF-8.
 * 2. Requests and answers are opaque. What a function named ..._new, quilp_run or quilp_read_name
 * returns belongs to the caller, who frees it with the ..._free of its type; null is allowed there.
 * All that an answer returns belongs to the answer, and is valid until that is freed.
 * 3. Setters return 0, or -1 for a value that the request cannot have, or out of memory. The
 * request is unchanged then. Texts are copied.
 * 4. Identifiers are passed as a search gave them.
 * 5. Times are in milliseconds.
 * 6. No function throws, prints, or ends the process. A null handle is a wrong request: setters
 *    return -1, and answers tell nothing.
 *
 * What it does to your process
 *
 * - It reads /etc/config/zorp.conf at each lookup, as libquilp.h does. The add-on, and curl, run
 *   below a process of their own (a guard), which ends them, with all they started in their process
 *   group, when the time is over, the request is cancelled, or your process ends. You may ignore
 *   SIGCHLD, collect any child, and close descriptors 0 to 2. A thread of its own waits for each,
 *   so that your signal handlers run meanwhile.
 * - A search of the built-in route fetches the pages of its results concurrently: two curl
 *   processes at a time, each over as few connections as the server allows.
 * - An add-on's document is a temporary file under /tmp, which is removed before quilp_run returns.
 *
 * Thread safety: different requests and answers may be used by different threads at a time. Of one
 * request, only quilp_request_cancel may be called while another thread uses it.
 */

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Marks what the library exports. */
#if defined(__GNUC__)
#define QUILP_EXPORT __attribute__((visibility("default")))
#else
#define QUILP_EXPORT
#endif

/** The version of this header: major * 10000 + minor * 100 + patch. */
#define QUILP_HEADER_VERSION 10100

/** What is looked up, and which texts (quilp_text) and numbers (quilp_number) that takes. */
typedef enum quilp_lookup {
  QUILP_MOVIE_SEARCH = 1,    /**< keyword, count, year, language */
  QUILP_MOVIE_DETAILS = 2,   /**< id, language */
  QUILP_TV_SEARCH = 3,       /**< keyword, count, year, language */
  QUILP_TV_DETAILS = 4,      /**< id, language */
  QUILP_TV_EPISODE = 5,      /**< id of the show, season, episode, language */
  QUILP_ALBUM_SEARCH = 6,    /**< album, artist (optional), count */
  QUILP_ARTIST_ALBUMS = 7,   /**< artist, count */
  QUILP_ARTIST_PICTURES = 8, /**< artist, count */
  QUILP_SONG = 9             /**< path of a karaoke song's file, which need not exist */
} quilp_lookup;

/** What the texts of a request are. */
typedef enum quilp_text {
  QUILP_KEYWORD = 1, /**< words to look for; the name of a file will do */
  QUILP_ID = 2,
  QUILP_ALBUM = 3,
  QUILP_ARTIST = 4,
  QUILP_PATH = 5,
  QUILP_LANGUAGE = 6 /**< such as "fr" or "pt-BR"; otherwise the one configured for the add-on */
} quilp_text;

/** What the numbers of a request are. */
typedef enum quilp_number {
  QUILP_COUNT = 1, /**< wanted results, 1 to 1000; 10 unless set */
  QUILP_YEAR = 2,  /**< of the title, 1800 to 2200; 0: any. Add-ons may use it */
  QUILP_SEASON = 3,
  QUILP_EPISODE = 4,
  QUILP_DEADLINE = 5, /**< milliseconds for the whole call, at most 2147483647;
                            0, which is usual: no limit */
  QUILP_ROUTE = 6     /**< a quilp_route */
} quilp_number;

/** Who may answer. */
typedef enum quilp_route {
  QUILP_ANY = 0,    /**< an enabled add-on, or else the built-in route */
  QUILP_ADD_ON = 1, /**< add-ons only */
  QUILP_BUILT_IN = 2
} quilp_route;

/** Why an answer is as it is. New ones may be added: treat an unknown one as a failure. */
typedef enum quilp_reason {
  QUILP_OK = 0,
  QUILP_NOTHING_FOUND = 1,
  QUILP_NO_ADD_ON = 2,          /**< none is enabled, and the built-in route was excluded */
  QUILP_CANNOT_START = 3,       /**< the add-on: the number is an errno value; or curl: -1 */
  QUILP_EXIT_STATUS = 4,        /**< the add-on ended with a status, which is the number */
  QUILP_SIGNAL = 5,             /**< a signal ended the add-on: the number */
  QUILP_TIMED_OUT = 6,          /**< the answer has what was found so far */
  QUILP_CANCELLED = 7,          /**< the answer has what was found so far */
  QUILP_MALFORMED_DOCUMENT = 8, /**< an add-on's or a service's; also none, or of another kind */
  QUILP_NO_NETWORK = 9,         /**< or no curl; the number is curl's exit status */
  QUILP_HTTP_STATUS = 10,       /**< the number */
  QUILP_CHALLENGE = 11,         /**< the site answers only browsers: enable an add-on */
  QUILP_OUT_OF_MEMORY = 12,
  QUILP_WRONG_REQUEST = 13, /**< a text is missing */
  QUILP_UNKNOWN_PAGE = 14   /**< a page has nothing in a known form */
} quilp_reason;

/** What is looked up, and how; of quilp_request_new. */
typedef struct quilp_request quilp_request;
/** What was found, and why nothing more was; of quilp_run and quilp_read_name. */
typedef struct quilp_answer quilp_answer;

/** What the caller knows of a name that is to be read. */
typedef enum quilp_name_kind {
  QUILP_NAME_ANY = 0, /**< nothing: the name, its folders and its extension tell */
  QUILP_NAME_MOVIE = 1,
  QUILP_NAME_EPISODE = 2,
  QUILP_NAME_SONG = 3
} quilp_name_kind;

/** Steps of a lookup that an observer is told. */
typedef enum quilp_event {
  QUILP_ADD_ON_STARTED = 1, /**< text: its path */
  QUILP_ADD_ON_ENDED = 2,   /**< number: its exit status, or -1 for a signal */
  QUILP_PAGE_FETCHED = 3,   /**< text: the address; number: the HTTP status, 0 for none */
  QUILP_MESSAGE = 4         /**< text: a line for a log */
} quilp_event;

/**
 * Is told the steps of a lookup, by the thread that calls quilp_run or by one that it started, one
 * at a time. It must not call quilp_run for the same request; it may cancel it.
 *
 * @param user    as it was given to quilp_request_set_observer
 * @param event   what happened
 * @param text    valid during the call; may be empty, never null
 * @param number  as the event says, or 0
 */
typedef void (*quilp_observer)(void* user, quilp_event event, const char* text, long number);

/**
 * Tells the version of the library.
 *
 * @return such as "1.1.0"; never null; static
 */
QUILP_EXPORT const char* quilp_version(void);

/**
 * Names a reason in one word.
 *
 * @return such as "timed-out"; never null; static
 */
QUILP_EXPORT const char* quilp_reason_name(quilp_reason reason);

/**
 * Makes a request. Set its texts and numbers, then pass it to quilp_run.
 *
 * @return a request to be freed by quilp_request_free; null for an unknown lookup, out of memory or
 *         of descriptors (a request holds one)
 */
QUILP_EXPORT quilp_request* quilp_request_new(quilp_lookup what);

/**
 * Sets a text of a request. A null text takes it back.
 *
 * @return 0; -1 for a text that there is not, for a null request, or out of memory
 */
QUILP_EXPORT int quilp_request_set_text(quilp_request* request, quilp_text which, const char* text);

/**
 * Sets a number of a request.
 *
 * @return 0; -1 for a number that there is not, a value that it cannot have, or a null request
 */
QUILP_EXPORT int quilp_request_set_number(quilp_request* request, quilp_number which, long number);

/**
 * Sets who is told the steps of a lookup. A null observer takes it back.
 *
 * @return 0; -1 for a null request
 */
QUILP_EXPORT int quilp_request_set_observer(quilp_request* request, quilp_observer observer,
                                            void* user);

/**
 * Cancels a request. The run that another thread waits for, or the next one, returns within 50 ms.
 * A request stays cancelled. May be called in a signal handler.
 */
QUILP_EXPORT void quilp_request_cancel(quilp_request* request);

/** Frees a request. No run may be under way. */
QUILP_EXPORT void quilp_request_free(quilp_request* request);

/**
 * Looks up what a request asks for. Where the time is over or the request is cancelled, it ends all
 * that it started and returns within 50 ms, with what was found so far.
 *
 * @return an answer to be freed by quilp_answer_free, also for a failure: see quilp_answer_reason;
 *         null only out of memory for the answer itself
 */
QUILP_EXPORT quilp_answer* quilp_run(quilp_request* request);

/**
 * Reads the name of a release, such as "The.Paper.Lighthouse.2011.1080p.mkv", or of a karaoke
 * song's file. Nobody is asked, and the file need not exist. The answer has one result. Its
 * elements are the keys that quilp(1) prints for a name: "kind", "title", "year", "season",
 * "episode" and so on; "identifiers" are written as "imdb:tt0133093". The reader is a part of the
 * library that is loaded here for the first time, and stays: quilp/names.so beside libquilp.so.
 *
 * @param name  a name, or a path, whose folders fill what the name leaves out; any bytes
 * @param kind  what is known of it
 * @return an answer to be freed by quilp_answer_free; its reason is QUILP_CANNOT_START, with an
 *         errno value, if the reader cannot be loaded, and QUILP_WRONG_REQUEST for a null name or
 *         an unknown kind; null only out of memory for the answer itself
 */
QUILP_EXPORT quilp_answer* quilp_read_name(const char* name, quilp_name_kind kind);

/**
 * Tells why an answer is as it is.
 *
 * @return the reason; QUILP_OUT_OF_MEMORY for a null answer
 */
QUILP_EXPORT quilp_reason quilp_answer_reason(const quilp_answer* answer);

/**
 * Explains the reason of an answer to people.
 *
 * @return a sentence without a full stop; empty for QUILP_OK; never null
 */
QUILP_EXPORT const char* quilp_answer_sentence(const quilp_answer* answer);

/**
 * Gives the number that belongs to the reason of an answer.
 *
 * @return the number; 0 for none
 */
QUILP_EXPORT long quilp_answer_number(const quilp_answer* answer);

/**
 * Tells which add-on was asked.
 *
 * @return its path; null for the built-in route
 */
QUILP_EXPORT const char* quilp_answer_add_on(const quilp_answer* answer);

/**
 * Tells how long a lookup took.
 *
 * @return milliseconds
 */
QUILP_EXPORT long quilp_answer_milliseconds(const quilp_answer* answer);

/**
 * Counts the results of an answer.
 *
 * @return the number of results: of details 1, or 0 for none
 */
QUILP_EXPORT size_t quilp_answer_count(const quilp_answer* answer);

/**
 * Counts the values that a result has of an element, such as "genre". Elements are those of
 * quilp-addon(7).
 *
 * @return the number of values; 0 for an unknown element or result
 */
QUILP_EXPORT size_t quilp_answer_size(const quilp_answer* answer, size_t result,
                                      const char* element);

/**
 * Gives one of the values that a result has of an element. The values of "actor" are names.
 *
 * @return the value; null where there is none
 */
QUILP_EXPORT const char* quilp_answer_value(const quilp_answer* answer, size_t result,
                                            const char* element, size_t i);

/**
 * Gives the role of an actor.
 *
 * @return the role; null where there is none
 */
QUILP_EXPORT const char* quilp_answer_role(const quilp_answer* answer, size_t result, size_t i);

/**
 * Gives the first value that a result has of an element, such as "title".
 *
 * @return the value; null where there is none
 */
QUILP_EXPORT const char* quilp_answer_text(const quilp_answer* answer, size_t result,
                                           const char* element);

/**
 * Gives the whole answer as JSON. It is {"reason", "sentence", "add_on", "milliseconds",
 * "results"}; a result has a member for each element: a text, a list of texts, or a list of
 * {"name", "role"}.
 *
 * @return the JSON text; "{}" for a null answer or out of memory
 */
QUILP_EXPORT const char* quilp_answer_json(const quilp_answer* answer);

/** Frees an answer and all that it returned. */
QUILP_EXPORT void quilp_answer_free(quilp_answer* answer);

#ifdef __cplusplus
}
#endif

#endif
