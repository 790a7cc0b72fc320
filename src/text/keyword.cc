#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "ascii.h"
#include "libquilp.h"

namespace libquilp {
namespace {

constexpr char kBlank = ' ';
constexpr int kFirstYear = 1900;
constexpr int kLastYear = 2100;

// The longer forms come before "x264", so that they are blanked as a whole.
constexpr std::string_view kReleaseTags[] = {
    "1080p", "1080i", "720p",   "BluRay", "x264-SPARKS", "x264-CHD", "x264-YYeTs", "x264",
    "YIFY",  "DTS",   "2Audio", "DD5.1",  "3AUDIO-WAF",  "HDTV",     "FoV"};

/// A set of release tags: one bit for each, in the order of the table.
using Tags = std::uint16_t;
constexpr std::size_t kTagCount = std::size(kReleaseTags);
constexpr Tags kAllTags = (1U << kTagCount) - 1;
constexpr Tags kSeparator = 1U << kTagCount;

/// What a byte can be: the start of some tags, or a separator.
struct ByteTable {
  Tags of[256] = {};

  constexpr ByteTable() {
    for (const char c : std::string_view(" -_.~+")) {
      of[static_cast<unsigned char>(c)] = kSeparator;
    }
    for (std::size_t i = 0; i < kTagCount; ++i) {
      of[static_cast<unsigned char>(kReleaseTags[i][0])] |= static_cast<Tags>(1U << i);
    }
  }
  constexpr unsigned operator[](char c) const { return of[static_cast<unsigned char>(c)]; }
};
constexpr ByteTable kBytes;

bool isSeparator(char c) { return kBytes[c] == kSeparator; }

std::size_t firstTag(unsigned tags) { return static_cast<std::size_t>(__builtin_ctz(tags)); }

/// Calls visit(i) for each tag of the set, in their order.
template <class Visit>
void forEachTag(unsigned tags, Visit visit) {
  for (; tags != 0; tags &= tags - 1) {
    visit(firstTag(tags));
  }
}

/// Tags of one piece of a name.
struct FoundTags {
  unsigned tags = 0;
  std::size_t end = 0;  // after the last tag

  /// Looks which of `candidates` stand at a place.
  void look(std::string_view text, std::size_t at, unsigned candidates) {
    forEachTag(candidates, [&](std::size_t i) {
      const std::string_view tag = kReleaseTags[i];
      if (text.size() - at >= tag.size() && text[at + 1] == tag[1] &&
          text.compare(at, tag.size(), tag) == 0) {
        tags |= 1U << i;
        end = std::max(end, at + tag.size());
      }
    });
  }
};

/// Blanks every bracketed group, innermost first, and every opening bracket that is never closed. A
/// closing bracket without an opening one stays.
void blankBrackets(std::string& text, char opening, char closing) {
  const std::size_t first = text.find(opening);
  if (first == std::string::npos) {
    return;
  }
  std::size_t closings = 0;
  for (std::size_t i = text.size(); i-- > first;) {
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
  // Each remaining opening bracket has a closing one, so a depth counter finds the text inside.
  std::size_t depth = 0;
  for (std::size_t i = first; i < text.size(); ++i) {
    char& c = text[i];
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

std::size_t pastDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && isDigit(static_cast<unsigned char>(text[at]))) {
    ++at;
  }
  return at;
}

/// Whether the word's leading number, as strtol reads it, is a year. A word contains no sign.
bool startsWithYear(std::string_view word) {
  std::size_t at = 0;
  while (at < word.size() && isSpace(static_cast<unsigned char>(word[at]))) {
    ++at;
  }
  int number = 0;
  for (; at < word.size() && isDigit(static_cast<unsigned char>(word[at])); ++at) {
    number = 10 * number + (word[at] - '0');
    if (number > kLastYear) {
      return false;
    }
  }
  return number >= kFirstYear;
}

/// Whether the word matches "^[sS][0-9]+[eE][0-9]+". Compares by hand: a regular expression would
/// cost more than the rest of the work, and compiling it could fail.
bool startsWithEpisode(std::string_view word) {
  if (word[0] != 's' && word[0] != 'S') {
    return false;
  }
  const std::size_t e = pastDigits(word, 1);
  return e > 1 && e < word.size() && (word[e] == 'e' || word[e] == 'E') &&
         pastDigits(word, e + 1) > e + 1;
}

/// The title words of a name, joined by single blanks.
class TitleWords {
 public:
  /// Takes the words up to the first year after the first word. Blanks the first occurrence of each
  /// tag, in the tags' order. No tag crosses the end of a piece, so pieces are read one by one.
  void read(std::string_view text) {
    for (std::size_t at = 0; at < text.size() && !done_; ++at) {
      const std::size_t start = at;
      FoundTags found;
      at = pieceEnd(text, at, found);
      const std::string_view piece = text.substr(start, at - start);
      if (found.tags == 0) {
        add(piece);
      } else {
        addBlanked(piece, found.tags);
      }
    }
  }

  std::string& words() { return words_; }

 private:
  /// The next separator outside any tag.
  std::size_t pieceEnd(std::string_view text, std::size_t at, FoundTags& found) const {
    const unsigned wanted = tags_ | kSeparator;
    for (; at < text.size(); ++at) {
      const unsigned kind = kBytes[text[at]] & wanted;
      if (kind == 0) {
        continue;
      }
      if (kind != kSeparator) {
        found.look(text, at, kind);
      } else if (at >= found.end) {
        break;
      }
    }
    return at;
  }

  void addBlanked(std::string_view text, unsigned found) {
    if (text == kReleaseTags[firstTag(found)]) {  // the usual case
      tags_ &= ~(1U << firstTag(found));
      return;
    }
    std::string piece(text);
    forEachTag(found, [&](std::size_t i) {
      const std::string_view tag = kReleaseTags[i];
      const std::size_t at = piece.find(tag);
      if (at != std::string::npos) {  // no other tag has blanked it
        piece.replace(at, tag.size(), tag.size(), kBlank);
        tags_ &= ~(1U << i);
      }
    });
    auto start = piece.begin();
    while (start != piece.end() && !done_) {
      const auto end = std::find_if(start, piece.end(), isSeparator);
      add(std::string_view(&*start, static_cast<std::size_t>(end - start)));
      start = end == piece.end() ? end : end + 1;
    }
  }

  void add(std::string_view word) {
    if (word.empty()) {
      return;
    }
    done_ = !words_.empty() && startsWithYear(word);
    if (done_ || startsWithEpisode(word)) {
      return;
    }
    if (!words_.empty()) {
      words_ += kBlank;
    }
    words_ += word;
  }

  std::string words_;
  unsigned tags_ = kAllTags;  // the tags not found so far
  bool done_ = false;
};

std::string encodeForQuery(const std::string& words) {
  std::string encoded;
  encoded.reserve(words.size() + words.size() / 2);
  for (const char c : words) {
    if (isAlnum(static_cast<unsigned char>(c))) {
      encoded += c;
    } else if (isSeparator(c)) {
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
  std::string_view text(keyword != nullptr ? keyword : "");
  std::string unbracketed;
  if (text.find('(') != std::string_view::npos || text.find('[') != std::string_view::npos) {
    unbracketed = text;
    blankBrackets(unbracketed, '(', ')');
    blankBrackets(unbracketed, '[', ']');
    text = unbracketed;
  }
  TitleWords title;
  title.read(text);
  return mode == 1 ? encodeForQuery(title.words()) : std::move(title.words());
}
