#include "freshness.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <map>

#include "ascii.h"

namespace quilp::kit {
namespace {

constexpr Seconds kLongestGuess = 86400;
constexpr Seconds kMostSeconds = Seconds{1} << 31;  // as RFC 9111 has it for larger ones
constexpr Seconds kNotFoundFor = 600;

std::optional<Seconds> readSeconds(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  return std::min<Seconds>(std::strtoll(text.c_str(), nullptr, 10), kMostSeconds);
}

/// The directives of Cache-Control, in lower case. Of one that occurs twice, the smaller value.
std::map<std::string, std::string> directivesOf(const TransferResult& result) {
  std::map<std::string, std::string> directives;
  std::string name;
  std::string value;
  bool inValue = false;
  bool isQuoted = false;
  const auto finish = [&] {
    const auto [at, isNew] = directives.emplace(name, value);
    const std::optional<Seconds> other = readSeconds(value);
    if (!isNew && other && other < readSeconds(at->second)) {
      at->second = value;
    }
    name.clear();
    value.clear();
    inValue = false;
  };
  for (const auto& [header, text] : result.headers) {
    if (header != "cache-control") {
      continue;
    }
    for (const char c : text) {
      if (c == '"') {
        isQuoted = !isQuoted;
      } else if (c == ',' && !isQuoted) {
        finish();
      } else if (c == '=' && !inValue) {
        inValue = true;
      } else if (!libquilp::isSpace(static_cast<unsigned char>(c))) {
        (inValue ? value : name) +=
            static_cast<char>(libquilp::toLower(static_cast<unsigned char>(c)));
      }
    }
    isQuoted = false;
    finish();
  }
  return directives;
}

bool variesWithoutEnd(const TransferResult& result) {
  return std::any_of(result.headers.begin(), result.headers.end(), [](const auto& header) {
    return header.first == "vary" && header.second.find('*') != std::string::npos;
  });
}

bool isNotFound(int status) { return status == 404 || status == 410; }

/// From when it was made.
Seconds lifetime(const TransferResult& result, Seconds made, Seconds unless) {
  const std::map<std::string, std::string> directives = directivesOf(result);
  if (directives.count("no-cache") != 0) {
    return 0;
  }
  const auto maxAge = directives.find("max-age");
  if (maxAge != directives.end()) {
    return readSeconds(maxAge->second).value_or(0);
  }
  if (!result.header("expires").empty()) {
    return readDate(result.header("expires")).value_or(made) - made;
  }
  const std::optional<Seconds> modified = readDate(result.header("last-modified"));
  if (modified && !isNotFound(result.status)) {
    return std::clamp<Seconds>((made - *modified) / 10, 0, kLongestGuess);
  }
  return unless;
}

}  // namespace

Seconds secondsNow() { return static_cast<Seconds>(std::time(nullptr)); }

std::optional<Seconds> readDate(const std::string& text) {
  for (const char* form :
       {"%a, %d %b %Y %H:%M:%S GMT", "%A, %d-%b-%y %H:%M:%S GMT", "%a %b %d %H:%M:%S %Y"}) {
    std::tm parts = {};
    const char* const end = strptime(text.c_str(), form, &parts);
    if (end != nullptr && *end == '\0') {
      return static_cast<Seconds>(timegm(&parts));
    }
  }
  return std::nullopt;
}

std::optional<Seconds> retryAfter(const TransferResult& result, Seconds now) {
  const std::string text = result.header("retry-after");
  if (const std::optional<Seconds> seconds = readSeconds(text)) {
    return seconds;
  }
  const std::optional<Seconds> date = readDate(text);
  return date ? std::optional<Seconds>(std::max<Seconds>(*date - now, 0)) : std::nullopt;
}

std::optional<Seconds> freshFor(const TransferResult& result, Seconds now, Seconds unless) {
  if (directivesOf(result).count("no-store") != 0 || variesWithoutEnd(result)) {
    return std::nullopt;
  }
  const Seconds made = readDate(result.header("date")).value_or(now);
  const Seconds age =
      std::max({Seconds{0}, now - made, readSeconds(result.header("age")).value_or(0)});
  if (isNotFound(result.status)) {
    return std::clamp<Seconds>(lifetime(result, made, kNotFoundFor) - age, 0, kNotFoundFor);
  }
  return std::max<Seconds>(lifetime(result, made, unless) - age, 0);
}

}  // namespace quilp::kit
