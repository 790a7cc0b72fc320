#pragma once

#include <cstdint>

// What the tables of a catalogue file hold. Numbers in values are packed (bytes.h).
//
//   meta      name -> value: version, rows, date and size of things
//   title     rank / kTitlesARow -> its titles, deflated; rank 0 has the most votes
//   person    number / kPeopleARow -> their names
//   season    identifier of a show * kSeasons + season -> its episodes, deflated
//   ident     identifier / kIdentsARow -> which identifier, and its rank or its season
//   name      number of a normalised name / kNamesARow -> their references and texts; the best
//             known name is 0
//   exact     hash of the sorted words / names a bucket -> numbers of names
//   word      the words in order, with their number
//   posting   number of a word -> its text and the numbers of names that have it; the word of the
//             best known name is 0
//   deletion  hash of a word without one letter -> numbers of words
//   start     letters that more than kFewWords words begin with -> the best known of these words

namespace quilp::catalogue {

inline constexpr int kVersion = 5;
inline constexpr unsigned kTitlesARow = 16;
inline constexpr unsigned kNamesARow = 8;
inline constexpr unsigned kPeopleARow = 32;
inline constexpr unsigned kIdentsARow = 32;
inline constexpr unsigned kSeasons = 4096;
inline constexpr unsigned kNamesABucket = 8;
inline constexpr unsigned kFirstYear = 1870;  // references keep years from here in one byte

/// Words of these lengths are found with one letter wrong.
inline constexpr unsigned kShortestCorrected = 3;
inline constexpr unsigned kLongestCorrected = 24;

/// Letters that have a row of their own where many words begin with them.
inline constexpr unsigned kShortestStart = 2;
inline constexpr unsigned kLongestStart = 7;
inline constexpr unsigned kFewWords = 64;
inline constexpr unsigned kWordsOfAStart = 8;

/// Whose name it is, the more telling first.
enum class Source : std::uint8_t { kTitle, kOriginalTitle, kAlternative };

/// A name's title, packed: rank, year, kind and how known it is.
struct Reference {
  std::uint32_t rank = 0;
  unsigned year = 0;
  bool isShow = false;
  Source source = Source::kTitle;
  unsigned votesLog = 0;  // bits of the number of votes, at most 30
};

}  // namespace quilp::catalogue
