#include <regex.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "ascii.h"
#include "libquilp.h"
#include "text/c_locale.h"

namespace libquilp {
namespace {

constexpr char kBlank = ' ';
constexpr char kSeparators[] = " -_.~+";
constexpr char kEpisode[] = "^[sS][0-9]+[eE][0-9]+";
constexpr long kFirstYear = 1900;
constexpr long kLastYear = 2100;

// The longer forms stand before "x264", so that they are blanked whole.
constexpr std::string_view kReleaseTags[] = {
    "1080p", "1080i", "720p",   "BluRay", "x264-SPARKS", "x264-CHD", "x264-YYeTs", "x264",
    "YIFY",  "DTS",   "2Audio", "DD5.1",  "3AUDIO-WAF",  "HDTV",     "FoV"};

/// Blanks every group, from the last opening bracket to the first closing one behind it and so on
/// outwards, and openings that are never closed; a closing bracket without an opening stays.
void blankBrackets(std::string& text, char opening, char closing) {
  std::size_t closings = 0;
  for (std::size_t i = text.size(); i-- > 0;) {
    if (text[i] == closing) {
      ++closings;
    } else if (text[i] == opening) {
      if (closings > 0) {
        --closings;
      } else {
        text[i] = kBlank;
      }
    }
  }
  // Every opening that is left has its closing now, so that a depth tells what is inside.
  std::size_t depth = 0;
  for (char& c : text) {
    if (c == opening) {
      ++depth;
    }
    const bool inside = depth > 0;
    if (c == closing && inside) {
      --depth;
    }
    if (inside) {
      c = kBlank;
    }
  }
}

void blankReleaseTags(std::string& text) {
  for (const std::string_view tag : kReleaseTags) {
    const std::size_t at = text.find(tag);
    if (at != std::string::npos) {
      text.replace(at, tag.size(), tag.size(), kBlank);
    }
  }
}

class EpisodePattern {
 public:
  EpisodePattern() : ready_(regcomp(&pattern_, kEpisode, REG_EXTENDED | REG_NOSUB) == 0) {}
  ~EpisodePattern() {
    if (ready_) {
      regfree(&pattern_);
    }
  }
  EpisodePattern(const EpisodePattern&) = delete;
  EpisodePattern& operator=(const EpisodePattern&) = delete;

  bool ready() const { return ready_; }
  bool matches(const char* token) const {
    const int result = regexec(&pattern_, token, 0, nullptr, 0);
    if (result == REG_ESPACE) {
      throw std::bad_alloc();
    }
    return result == 0;
  }

 private:
  regex_t pattern_;
  bool ready_;
};

bool startsWithYear(const char* token) {
  const long number = std::strtol(token, nullptr, 10);
  return number >= kFirstYear && number <= kLastYear;
}

/// The title words of `text`, whose separators are overwritten, joined by single blanks.
std::string titleWords(std::string& text, const EpisodePattern& episode) {
  std::string words;
  char* rest = nullptr;
  for (const char* token = strtok_r(text.data(), kSeparators, &rest); token != nullptr;
       token = strtok_r(nullptr, kSeparators, &rest)) {
    if (!words.empty() && startsWithYear(token)) {
      break;
    }
    if (episode.matches(token)) {
      continue;
    }
    if (!words.empty()) {
      words += kBlank;
    }
    words += token;
  }
  return words;
}

std::string encodeForQuery(const std::string& words) {
  std::string encoded;
  encoded.reserve(words.size() + words.size() / 2);
  for (const char c : words) {
    if (isAlnum(static_cast<unsigned char>(c))) {
      encoded += c;
    } else if (std::strchr(kSeparators, c) != nullptr) {
      encoded += "%20";
    } else {
      encoded += '%';
      encoded += to_hex(static_cast<char>(static_cast<unsigned char>(c) >> 4));
      encoded += to_hex(c);
    }
  }
  return encoded;
}

}  // namespace
}  // namespace libquilp

std::string ProcessKeyword(const char* keyword, int mode) {
  using namespace libquilp;
  std::string text = keyword != nullptr ? keyword : "";
  blankBrackets(text, '(', ')');
  blankBrackets(text, '[', ']');
  blankReleaseTags(text);
  const CLocale digits;
  const EpisodePattern episode;
  if (!episode.ready()) {
    std::fputs("regcomp() failed, returning nonzero\n", stderr);
    return text;
  }
  std::string words = titleWords(text, episode);
  return mode == 1 ? encodeForQuery(words) : words;
}
