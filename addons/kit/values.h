#pragma once

#include <string>

// Values of services as documents have them. What cannot be used is empty.

namespace quilp::kit {

/// The valid beginning of a date: YYYY, YYYY-MM or YYYY-MM-DD.
std::string dateOf(const std::string& text);

/// The year of a date; 0 for none.
int yearOf(const std::string& date);

/// The address of a picture or page, which always begins with https://.
std::string addressOf(const std::string& text);

/// 8.46 gives "8.5".
std::string ratingOf(double rating);

/// 1234.0 gives "1234"; empty for 0 and below.
std::string countOf(double number);

/// 45 gives "45 min".
std::string minutesOf(double minutes);

/// "imdb:tt0000001" and "tt0000001" give "tt0000001".
std::string imdbOf(const std::string& id);

/// Whether it is made of digits alone, as identifiers of services are.
bool isNumber(const std::string& text);

/// Text of a page: tags are left out, references decoded, blanks joined.
std::string textOfHtml(const std::string& html);

}  // namespace quilp::kit
