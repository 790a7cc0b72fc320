#include "name/song_parts.h"

#include <algorithm>

#include "ascii.h"
#include "name/song_text.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

using std::string;
using std::string_view;

bool hasHigh(string_view text) { return std::any_of(text.begin(), text.end(), isHigh); }

/// Whether a blank stands on one side of the byte at `at`.
bool isByBlank(string_view text, std::size_t at) {
  return (at > 0 && text[at - 1] == ' ') || (at + 1 < text.size() && text[at + 1] == ' ');
}

/// Splits at each byte of `marks` for which isSeparator(at) holds.
template <class IsSeparator>
std::vector<string> split(string_view text, string_view marks, IsSeparator isSeparator) {
  std::vector<string> texts;
  std::size_t start = 0;
  for (std::size_t at = 0; at <= text.size(); ++at) {
    const bool ends = at == text.size();
    if (ends || (contains(marks, text.substr(at, 1)) && isSeparator(at))) {
      if (const string_view part = trimmed(text.substr(start, at - start)); !part.empty()) {
        texts.emplace_back(part);
      }
      start = at + 1;
    }
  }
  return texts;
}

}  // namespace

string SongParts::joined(std::size_t from, std::size_t to) const {
  string text;
  for (std::size_t i = from; i < to; ++i) {
    text += i > from ? glue : "";
    text += texts[i];
  }
  return text;
}

SongParts songPartsOf(string_view text, bool artistKnown) {
  const auto isPart = [](std::size_t) { return true; };
  const auto isApart = [&](std::size_t at) {
    return at > 0 && at + 1 < text.size() && text[at - 1] == ' ' && text[at + 1] == ' ';
  };
  if (contains(text, " - ")) {
    return {split(text, "-", isApart), " - "};
  }
  if (contains(text, "- ") || contains(text, " -")) {
    return {split(text, "-", [&](std::size_t at) { return isByBlank(text, at); }), " - "};
  }
  if (contains(text, "/")) {
    return {split(text, "/", isPart), "/"};
  }
  if (hasHigh(text)) {
    return {split(text, "_-", isPart), "-"};
  }
  if (contains(text, "_")) {
    return {split(text, "_", isPart), " "};
  }
  if (artistKnown) {
    return {{string(text)}, ""};
  }
  return {split(text, "-", isPart), "-"};
}

string withBlanks(string_view text) {
  string blanks(text);
  if (contains(text, ".-.") && text.find_first_of(" _") == string::npos) {
    std::replace(blanks.begin(), blanks.end(), '.', ' ');
  }
  const auto count = std::count(text.begin(), text.end(), '_');
  const bool parted =
      contains(text, "_-_") || (!hasHigh(text) && text.find_first_of("-(") != string::npos);
  if (count > 1 && parted && !contains(text, " ")) {
    std::replace(blanks.begin(), blanks.end(), '_', ' ');
  }
  return blanks;
}

}  // namespace libquilp
