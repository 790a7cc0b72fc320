#include "values.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "ascii.h"
#include "text/entities.h"

namespace quilp::kit {
namespace {

constexpr double kMostMinutes = 100000;
constexpr double kHighestRating = 10;
constexpr double kMostCounted = 1e12;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// The number of so many digits at a place; 0 for none.
int digitsAt(const std::string& text, std::size_t at, std::size_t count) {
  int number = 0;
  for (std::size_t i = at; i < at + count; ++i) {
    if (i >= text.size() || !isDigit(text[i])) {
      return 0;
    }
    number = number * 10 + (text[i] - '0');
  }
  return number;
}

bool startsTag(const std::string& html, std::size_t at) {
  const char next = at + 1 < html.size() ? html[at + 1] : ' ';
  return html[at] == '<' && (next == '/' || next == '!' || (next | 0x20) >= 'a') &&
         (next | 0x20) <= 'z';
}

/// Words of two paragraphs stay apart; a word in part of bold letters stays one.
bool partsWords(const std::string& html, std::size_t tag) {
  std::string name;
  for (std::size_t i = html.find_first_not_of('/', tag + 1); i < html.size() && name.size() < 4;
       ++i) {
    if (!libquilp::isAlnum(static_cast<unsigned char>(html[i]))) {
      break;
    }
    name += static_cast<char>(html[i] | 0x20);
  }
  return name == "p" || name == "br" || name == "li" || name == "div";
}

}  // namespace

std::string dateOf(const std::string& text) {
  const int month = text.size() > 4 && text[4] == '-' ? digitsAt(text, 5, 2) : 0;
  const int day = text.size() > 7 && text[7] == '-' ? digitsAt(text, 8, 2) : 0;
  if (yearOf(text) == 0) {
    return "";
  }
  if (month < 1 || month > 12) {
    return text.substr(0, 4);
  }
  return text.substr(0, day >= 1 && day <= 31 ? 10 : 7);
}

int yearOf(const std::string& date) {
  return date.size() > 4 && isDigit(date[4]) ? 0 : digitsAt(date, 0, 4);
}

std::string addressOf(const std::string& text) {
  const std::string plain = "http://";
  const std::string safe = "https://";
  std::string address = text;
  if (address.compare(0, 2, "//") == 0) {
    address.insert(0, "https:");
  } else if (address.compare(0, plain.size(), plain) == 0) {
    address.replace(0, plain.size(), safe);
  }
  const bool isOne = address.compare(0, safe.size(), safe) == 0 && address.size() > safe.size() &&
                     libquilp::isAlnum(static_cast<unsigned char>(address[safe.size()]));
  const bool isClean = std::all_of(address.begin(), address.end(), [](unsigned char c) {
    return c > ' ' && c != 0x7f && c != '"' && c != '<' && c != '>' && c != '\\';
  });
  return isOne && isClean ? address : "";
}

std::string ratingOf(double rating) {
  const double tenths = std::round(rating * 10);
  if (!(tenths >= 1 && tenths <= kHighestRating * 10)) {
    return "";
  }
  const int whole = static_cast<int>(tenths);
  return std::to_string(whole / 10) + '.' + std::to_string(whole % 10);
}

std::string countOf(double number) {
  return number >= 1 && number <= kMostCounted ? std::to_string(static_cast<long long>(number))
                                               : "";
}

std::string minutesOf(double minutes) {
  return minutes <= kMostMinutes && minutes >= 1 ? countOf(minutes) + " min" : "";
}

std::string imdbOf(const std::string& id) {
  const std::string source = "imdb:";
  const std::string number =
      id.substr(id.compare(0, source.size(), source) == 0 ? source.size() : 0);
  const bool isOne = number.size() > 2 && number.size() < 20 && number.compare(0, 2, "tt") == 0 &&
                     std::all_of(number.begin() + 2, number.end(), isDigit);
  return isOne ? number : "";
}

bool isNumber(const std::string& text) {
  return !text.empty() && text.size() < 20 && std::all_of(text.begin(), text.end(), isDigit);
}

std::string textOfHtml(const std::string& html) {
  std::string text;
  for (std::size_t at = 0; at < html.size(); ++at) {
    if (startsTag(html, at)) {
      text += partsWords(html, at) ? " " : "";
      at = std::min(html.find('>', at), html.size());
    } else {
      text += html[at];
    }
  }
  std::string joined;
  for (const char c : libquilp::decoded(text)) {
    const bool isBlank = c == ' ' || (c >= '\t' && c <= '\r');
    if (!isBlank) {
      joined += c;
    } else if (!joined.empty() && joined.back() != ' ') {
      joined += ' ';
    }
  }
  joined.erase(joined.find_last_not_of(' ') + 1);
  return joined;
}

}  // namespace quilp::kit
