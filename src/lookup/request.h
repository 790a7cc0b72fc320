#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lookup/answer.h"
#include "plugin/environment.h"
#include "plugin/observer.h"
#include "plugin/record_table.h"

// A lookup is data: a constant Request and its Values.

namespace libquilp {

/// How the print functions of a media type work.
enum class Printing {
  kNone,           // no print functions
  kRecords,        // print the records of the other functions
  kAddOnDocument,  // copy the document of an add-on of any class
};

struct Media {
  const char* type;  // as the registry has it
  Printing printing;
};

inline constexpr Media kMovieMedia = {"Movie", Printing::kRecords};
inline constexpr Media kTVMedia = {"TV", Printing::kRecords};
inline constexpr Media kMusicMedia = {"Music", Printing::kAddOnDocument};
inline constexpr Media kKaraokeMedia = {"KTV", Printing::kNone};
inline constexpr Media kAllMedia[] = {kMovieMedia, kTVMedia, kMusicMedia, kKaraokeMedia};

/// Whether the caller wants records or a printed document.
enum class Use { kRecords, kPrint };

/// Whether only an add-on of the library's own class is used.
constexpr bool asksOwnClassOnly(const Media& media, Use use) {
  return use == Use::kRecords || media.printing != Printing::kAddOnDocument;
}

/// The arguments of a lookup. Only two texts may be null: `id` (the lookup is then refused) and
/// `language` (then the language configured for the add-on is used).
struct Values {
  const char* keyword = "";
  const char* id = "";
  const char* album = "";
  const char* artist = "";
  const char* path = "";
  const char* language = nullptr;
  int count = 0;
  int season = 0;
  int episode = 0;
  bool isWholeId = false;  // `id` has no five characters before it, also for an add-on

  // What only an add-on's environment tells.
  int year = 0;  // 0 for none
  const char* wantedLanguage = nullptr;

  static Values search(const char* keyword, int count, const char* language = nullptr);
  static Values title(const char* id, const char* language = nullptr);
  static Values ofEpisode(const char* id, int season, int episode, const char* language);
  static Values ofAlbum(const char* album, const char* artist, int count);
  static Values ofArtist(const char* artist, int count);
  static Values song(const char* path);
};

/// The value of an option, as an add-on gets it.
enum class Value { kKeyword, kCount, kLanguage, kId, kSeason, kEpisode, kAlbum, kArtist, kPath };

struct Option {
  const char* name;
  Value value;
};

/// An element that is read from an add-on's document.
struct Element {
  enum class Kind {
    kText,
    kNumber,
    kList,   // one element for each value
    kCast,   // one element for each actor, with a name and a role
    kNames,  // one element, with a "Name" for each value
  };

  const char* name;
  Kind kind = Kind::kText;
  bool required = false;
  bool needsRole = false;  // an actor without a role is an error
};

/// The output of a print function; no value if it prints nothing.
struct PrintedAnswer : Answer {
  std::optional<std::string> document;
};

/// Writes the document, if there is one, to standard output. Returns whether there was one.
bool writeOut(const PrintedAnswer& answer);

struct Request {
  const char* name;  // as the program's command
  Media media;
  const char* verb;
  Items<Option> options;  // in the add-on's order
  const char* root;       // of the add-on's document
  const char* entry;      // the element of one result; null if the root is the only result
  bool plainText;         // its values are outside CDATA sections
  bool printsCData;       // the printed document wraps each value, and is decoded afterwards

  /// Empty if the entry itself holds the value.
  std::vector<Element> (*elements)(const Request& request);

  /// Runs the lookup and returns the document that the print function writes. Null if there is no
  /// print function.
  PrintedAnswer (*print)(const Request& request, const Values& values, const Context& context);
};

/// The add-on that a lookup runs; no value for the built-in route.
std::optional<AddOn> addOnFor(const Request& request, Use use, const Context& context);

/// Verb and options, as passed to the add-on.
std::vector<std::string> argumentsOf(const Request& request, const Values& values,
                                     const AddOn& addOn);

/// What an add-on finds in its environment: a search, the caller's own words.
Variables variablesOf(const Request& request, const Values& values);

/// Elements of movies and shows in an add-on's search that only programs read which match files.
inline constexpr const char* kMatchingElements[] = {"original_title", "alternative_title", "votes"};

/// Every request, for programs that list or check them.
const std::vector<const Request*>& allRequests();

}  // namespace libquilp
