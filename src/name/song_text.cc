#include "name/song_text.h"

#include <algorithm>

#include "ascii.h"
#include "text/cutter.h"

namespace libquilp {
namespace {

using std::string;
using std::string_view;

bool isNumeral(char c) { return isDigit(static_cast<unsigned char>(c)); }
bool isWordByte(char c) { return isHigh(c) || isAlnum(static_cast<unsigned char>(c)); }
bool isLetter(char c) { return isAlnum(static_cast<unsigned char>(c)) && !isNumeral(c); }

/// The ASCII sign that a wide or typographic one stands for; 0 for what stays as it is.
char plainSign(unsigned code) {
  if (code >= 0xFF01 && code < 0xFF5E && code != 0xFF01 && code != 0xFF1F && code != 0xFF0C) {
    return static_cast<char>(code - 0xFEE0);
  }
  switch (code) {
    case 0x2010:
    case 0x2011:
    case 0x2012:
    case 0x2013:
    case 0x2014:
    case 0x2015:
    case 0x2212:
      return '-';
    case 0x3000:
      return ' ';
    case 0x3010:
    case 0x3014:
      return '[';
    case 0x3011:
    case 0x3015:
      return ']';
    default:
      return 0;
  }
}

std::size_t countWhile(string_view text, std::size_t from, bool (*is)(char)) {
  std::size_t at = from;
  while (at < text.size() && is(text[at])) {
    ++at;
  }
  return at - from;
}

constexpr string_view kStylePhrases[] = {
    "in the style of",         "as made famous by", "made famous by", "made popular by",
    "originally performed by", "as performed by",   "performed by",   "al estilo de",
    "à la manière de",         "im stil von",       "no estilo de"};

constexpr string_view kGuestWords[] = {"featuring ", "feat. ", "feat ", "ft. ", "ft "};
constexpr string_view kPartnerWords[] = {"duet with ", "with "};

struct Separator {
  string_view text;  // in lower case
  bool spare;        // not before "the", "his" ...: that is a band's name
};
constexpr Separator kSeparators[] = {
    {" featuring ", false}, {" feat. ", false},     {" feat ", false}, {" ft. ", false},
    {" ft ", false},        {" duet with ", false}, {" vs. ", false},  {" vs ", false},
    {" with ", false},      {" x ", false},         {" × ", false},    {" / ", false},
    {"、", false},          {";", false},           {"+", false},      {"&", true},
};

bool startsBandName(string_view text) {
  const string lower = lowered(trimmed(text).substr(0, 5));
  for (const string_view word : {"the ", "his ", "her ", "los ", "las "}) {
    if (lower.compare(0, word.size(), word) == 0) {
      return true;
    }
  }
  return false;
}

/// The length of a separator of artists at `at`; 0 when there is none.
std::size_t separatorAt(string_view text, const string& lower, std::size_t at, bool commas) {
  for (const Separator& separator : kSeparators) {
    if (lower.compare(at, separator.text.size(), separator.text) == 0 &&
        !(separator.spare && startsBandName(text.substr(at + separator.text.size())))) {
      return separator.text.size();
    }
  }
  const bool between = at > 0 && at + 1 < text.size();
  if (between && (text[at] == '/' || text[at] == ',') &&
      (isHigh(text[at - 1]) || isHigh(text[at + 1]))) {
    return 1;
  }
  if (text.compare(at, 3, "，") == 0) {
    return 3;
  }
  return commas && text[at] == ',' ? 1 : 0;
}

/// Whether these are two or more names of two to four Chinese characters, one of them longer than
/// the family names of Japan.
bool areChineseNames(string_view text) {
  constexpr std::size_t kCharacter = 3;
  std::size_t names = 0;
  std::size_t longest = 0;
  for (std::size_t start = 0; start < text.size(); ++names) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    const std::size_t size = end - start;
    if (size < 2 * kCharacter || size > 4 * kCharacter || size % kCharacter != 0) {
      return false;
    }
    for (std::size_t at = start; at < end; at += kCharacter) {
      const auto lead = static_cast<unsigned char>(text[at]);
      if (lead < 0xE4 || lead > 0xE9) {
        return false;
      }
    }
    longest = std::max(longest, size);
    start = end + 1;
  }
  return names > 1 && longest > 2 * kCharacter;
}

string artistName(string_view text) {
  text = trimmed(text, "'\"");
  constexpr string_view kArticle = ", the";
  if (text.size() > kArticle.size() &&
      lowered(text.substr(text.size() - kArticle.size())) == kArticle) {
    return "The " + string(trimmed(text.substr(0, text.size() - kArticle.size())));
  }
  return string(text);
}

}  // namespace

string lowered(string_view text) {
  string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return static_cast<char>(toLower(static_cast<unsigned char>(c))); });
  return lower;
}

string_view trimmed(string_view text, string_view ends) {
  const std::size_t start = text.find_first_not_of(ends);
  if (start == string_view::npos) {
    return {};
  }
  return text.substr(start, text.find_last_not_of(ends) - start + 1);
}

string plainForm(string_view text) {
  string plain;
  plain.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = [&](std::size_t i) {
      return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U;
    };
    std::size_t size = 1;
    char c = text[at];
    if (byte(0) >= 0xE0 && byte(0) < 0xF0) {
      const char sign =
          plainSign((byte(0) & 0xFU) << 12 | (byte(1) & 0x3FU) << 6 | (byte(2) & 0x3FU));
      size = sign != 0 ? 3 : 1;
      c = sign != 0 ? sign : c;
    } else if ((byte(0) == 0xC2 && byte(1) == 0xA0)) {
      size = 2;  // a blank that does not break
      c = ' ';
    } else if (isSpace(static_cast<unsigned char>(c)) || c == 0) {
      c = ' ';
    }
    if (c != ' ' || (!plain.empty() && plain.back() != ' ')) {
      plain += c;
    }
    at += size;
  }
  return plain;
}

std::size_t discIdAt(string_view text, string& id) {
  const auto isGap = [&](std::size_t at) {
    return at < text.size() && string_view("- _").find(text[at]) != string_view::npos;
  };
  const std::size_t letters = countWhile(text, 0, isLetter);
  std::size_t at = letters;
  if (letters < 2 || letters > 6 || at >= text.size()) {
    return 0;
  }
  at += isGap(at) && text[at] != '_' ? 1 : 0;
  const std::size_t start = at;
  const std::size_t digits = countWhile(text, at, isNumeral);
  at += digits;
  if (digits < 2 || digits > 6) {
    return 0;
  }
  string disc(text.substr(0, letters));
  std::transform(disc.begin(), disc.end(), disc.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
  });
  disc += text.substr(start, digits);
  const std::size_t track = isGap(at) ? countWhile(text, at + 1, isNumeral) : 0;
  if (track >= 1 && track <= 3) {
    const std::size_t end = at + 1 + track;
    if (end == text.size() || !isWordByte(text[end])) {
      id = disc + '-' + string(text.substr(at + 1, track));
      return end;
    }
  }
  if (digits >= 3 && at == text.size()) {
    id = disc;
    return at;
  }
  return 0;
}

std::optional<StyleOf> styleOf(string_view text) {
  const string lower = lowered(text);
  for (const string_view phrase : kStylePhrases) {
    const std::size_t at = lower.find(phrase);
    const std::size_t end = at + phrase.size();
    if (at != string::npos && (at == 0 || !isWordByte(text[at - 1])) && end < text.size() &&
        text[end] == ' ') {
      return StyleOf{trimmed(text.substr(0, at)), trimmed(text.substr(end))};
    }
  }
  return std::nullopt;
}

std::optional<string_view> guestOf(string_view text, bool bracket) {
  const string lower = lowered(text.substr(0, 16));
  const auto guestAfter = [&](string_view word) {
    return lower.compare(0, word.size(), word) == 0 ? trimmed(text.substr(word.size()))
                                                    : string_view();
  };
  for (const string_view word : kGuestWords) {
    if (const string_view guest = guestAfter(word); !guest.empty()) {
      return guest;
    }
  }
  for (const string_view word : kPartnerWords) {
    if (const string_view guest = guestAfter(word); bracket && !guest.empty()) {
      return guest;
    }
  }
  return std::nullopt;
}

void addArtists(string_view text, bool chinese, std::vector<string>& artists) {
  const string lower = lowered(text);
  const bool blanks = chinese && areChineseNames(text);
  // "A, B & C" are three, "Name, First" is one.
  const bool commas = contains(text, ",") && (contains(text, "&") || contains(lower, " feat"));
  std::size_t start = 0;
  const auto add = [&](std::size_t end) {
    const string_view name = trimmed(text.substr(0, end).substr(std::min(start, end)), " -_,");
    if (!name.empty()) {
      artists.push_back(artistName(name));
    }
  };
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = blanks && text[at] == ' ' ? 1 : separatorAt(text, lower, at, commas);
    if (size == 0 || (at == start && text[at] == '+')) {
      ++at;
      continue;
    }
    add(at);
    at += size;
    start = at;
    at -= size > 1 && text[at - 1] == ' ' ? 1 : 0;  // the blank may start the next one, too
  }
  add(text.size());
}

}  // namespace libquilp
