#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quilp::catalogue {

/// A title as it is compared: lower case without accents and punctuation, words apart by one blank,
/// numerals as digits, "&" as "and", "Lamp, The" as "the lamp". Empty where nothing is left.
std::string normalise(std::string_view title);

/// The words of a normalised title; of Chinese, Japanese and Korean text each pair of characters.
std::vector<std::string_view> wordsOf(std::string_view normalised);

/// The words in order, apart by one blank: the same for titles that differ in the order of words.
/// Here the first word, too, is digits where it is a numeral.
std::string sortedWords(std::string_view normalised);

}  // namespace quilp::catalogue
