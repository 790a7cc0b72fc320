#pragma once

namespace quilp {

/// A promise of an add-on. Its identifier does not change: scripts rely on it.
struct Clause {
  const char* id;
  const char* expected;
};

namespace clause {

inline constexpr Clause kProgram = {"program", "an executable file that the system can start"};
inline constexpr Clause kUnknownVerb = {"unknown-verb", "a status other than 0 for no known verb"};
inline constexpr Clause kVerb = {"verb", "the verb is understood"};
inline constexpr Clause kStatus = {"status", "exit status 0 for a request that has an answer"};
inline constexpr Clause kTime = {"time", "the end within the time limit"};
inline constexpr Clause kInput = {"standard-input", "nothing is read from standard input"};
inline constexpr Clause kProcesses = {"processes", "no process runs on after the end"};
inline constexpr Clause kLeftovers = {"leftovers", "no file is left but the document"};

inline constexpr Clause kDocument = {"document", "a document in the file that -o names"};
inline constexpr Clause kEncoding = {"encoding", "UTF-8, and no other encoding declared"};
inline constexpr Clause kWellFormed = {"well-formed", "well-formed XML"};
inline constexpr Clause kRoot = {"root", "the root element of the request"};
inline constexpr Clause kEntries = {"entries", "an element for each result"};
inline constexpr Clause kFields = {"fields", "the elements that no result goes without"};
inline constexpr Clause kCData = {"cdata", "each value is the one CDATA section of its element"};
inline constexpr Clause kText = {"text", "each value is plain text, outside CDATA"};
inline constexpr Clause kNumbers = {"numbers", "decimal numbers where numbers are read"};
inline constexpr Clause kOnce = {"once", "an element of one value is there once"};
inline constexpr Clause kRepeated = {"repeated", "of several values, each has its own element"};
inline constexpr Clause kNames = {"names", "no elements but those that are read"};
inline constexpr Clause kRoles = {"roles", "a name and a role with every actor"};
inline constexpr Clause kEntities = {"entities",
                                     "no character references: CDATA keeps them as text"};
inline constexpr Clause kBlanks = {"blanks", "no blanks at the ends of a value"};
inline constexpr Clause kAddresses = {"addresses", "pictures and pages by http or https address"};
inline constexpr Clause kSameId = {"same-id", "the identifier that was asked for"};

inline constexpr Clause kTwice = {"twice", "the same values when asked again"};
inline constexpr Clause kCount = {"count", "no more results than -n asks for"};
inline constexpr Clause kNothingFound = {"nothing-found",
                                         "a status other than 0, or for a search an empty list"};
inline constexpr Clause kUnwritable = {"unwritable",
                                       "a status other than 0 when the file cannot be written"};

}  // namespace clause
}  // namespace quilp
