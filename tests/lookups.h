#pragma once

#include <functional>
#include <string>
#include <vector>

#include "libquilp.h"

// Every lookup of the public header in one table, which all tests of lookups share.

namespace test {

/// What a lookup is asked for; each takes what it needs.
struct Asked {
  const char* what;  // keyword, identifier, artist, album or path
  int count = 2;
  const char* artist = "";
  const char* lang = "en";
  int season = 2;
  int episode = 1;
};

constexpr int kUntouched = -7;     // nothing was stored in `error`
constexpr int kOutOfMemory = -20;  // an exception left the call: std::bad_alloc,
constexpr int kOutOfRange = -21;   // std::out_of_range,
constexpr int kLogicError = -22;   // another std::logic_error,
constexpr int kNeverRight = -23;   // any other; or half a document, or a role without an actor

struct Answer {
  int result = 0;
  int error = kUntouched;
  bool stored = false;  // an array, if only an empty one
  /// "name:value|…" of the fields that are set, a line for each record, or what was printed.
  std::string text = {};
};

enum class Kind { kFinds, kFills, kPrints };  // an array, a record, or a document is made

struct Lookup {
  std::string function;
  std::string type;           // of the add-on; a function without one does not look for an add-on
  Asked usual;                // what tests/addon.sh and the sample site know
  std::vector<int> failures;  // what the header lets the call give when memory, a process, … fails
  Kind kind;
  /// Makes the call and releases what it gave; `describes` fills the answer's text.
  std::function<void(const Asked& asked, Answer& answer, bool describes)> run;
};

const std::vector<Lookup>& lookups();
const Lookup& lookup(const std::string& function);

std::string described(const KTV_ExtraData_t& song);

/// What the function of this name gives.
Answer ask(const Lookup& lookup, const Asked& asked);
Answer ask(const std::string& function, const Asked& asked);

}  // namespace test
