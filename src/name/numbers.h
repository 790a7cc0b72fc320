#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "name/token.h"

// Numbers of seasons and episodes in the forms that name them: S01E02, 1x02, E05, 05v2, 01-12.

namespace libquilp {

/// A list of numbers with the bytes that it came from.
struct NumberList {
  std::vector<int> numbers;
  std::size_t begin = 0;
  std::size_t end = 0;

  bool empty() const { return numbers.empty(); }
};

/// What one marker tells.
struct Marker {
  NumberList seasons;
  NumberList episodes;
  NumberList disc;
  std::size_t end = 0;  // after its last byte; 0: no marker
};

/// Whether a marker may begin with these bytes, told without reading its numbers.
bool mayBeMarkerAt(std::string_view name, std::size_t at);

/// The marker that starts at a word: S01E02E03, S01-S03, 1x02-03, E05, EP05, S04D02. Null bytes:
/// none.
Marker markerAt(std::string_view name, std::size_t at);

/// A number or a range of numbers, with a version that counts for nothing: 5, 05v2, 01-12, 01~12.
/// `size` is 0 where the bytes are no such text to their end.
NumberList numbersIn(std::string_view text);

/// Adds a range; one that runs backwards or is too long adds its ends.
void addRange(int first, int last, std::vector<int>& numbers);

bool isYear(int number);

/// The value of a Roman numeral up to XX; 0 for another word.
int romanNumber(std::string_view word);

}  // namespace libquilp
