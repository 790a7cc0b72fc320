#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <map>

#include "fuzz.h"
#include "libquilp.h"

// Decodes and cleans any bytes, and compares with models that build new texts or search from the
// start over and over.

namespace {

constexpr std::uint32_t kUnicodeEnd = 0x110000;

std::string utf8(std::uint32_t code) {
  if (code < 0x80) {
    return {static_cast<char>(code)};
  }
  std::string tail;
  std::uint32_t room = 0x40;  // what the lead byte holds
  while (code >= room) {
    tail.insert(tail.begin(), static_cast<char>(0x80 + code % 0x40));
    code /= 0x40;
    room = room == 0x40 ? 0x20 : room / 2;
  }
  return static_cast<char>(0x100 - 2 * room + code) + tail;
}

int digitOf(char c, int base) {
  const std::string digits = "0123456789abcdef";
  const std::size_t value =
      digits.find(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
  return value < static_cast<std::size_t>(base) ? static_cast<int>(value) : -1;
}

/// What C takes for an unsigned number: blanks, a sign and a second "0x" in front. Nothing at all
/// is 0, and a number too large, or a negative one, no code point.
std::uint32_t modelNumber(const std::string& text, int base) {
  char* end = nullptr;
  errno = 0;
  const unsigned long value = std::strtoul(text.c_str(), &end, base);
  const bool whole = errno == 0 && *end == '\0' && (end != text.c_str() || text.empty());
  return whole ? static_cast<std::uint32_t>(std::min<unsigned long>(value, kUnicodeEnd))
               : kUnicodeEnd;
}

/// The names of HTML 4, and "apos". Three differ from the standard.
const std::map<std::string, std::uint32_t>& namedReferences() {
  static const auto references = [] {
    std::map<std::string, std::uint32_t> map;
    std::FILE* python = popen(
        "python3 -c 'import html.entities as e\n"
        "for name, code in e.name2codepoint.items(): print(name, code)'",
        "r");
    char name[32];
    std::uint32_t code = 0;
    while (std::fscanf(python, "%31s %u", name, &code) == 2) {
      map[name] = code;
    }
    fuzz::expect(pclose(python) == 0 && map.size() == 252, "Python gives no references");
    map["apos"] = '\'';
    map["nbsp"] = ' ';
    map["lang"] = 0x3008;
    map["rang"] = 0x3009;
    return map;
  }();
  return references;
}

/// The text for what stands between "&" and ";"; itself when it is no reference.
std::string modelReference(const std::string& name) {
  std::uint32_t code = kUnicodeEnd;
  if (name[0] == '#') {
    const bool hexadecimal = name.size() > 1 && (name[1] | 0x20) == 'x';
    code = modelNumber(name.substr(hexadecimal ? 2 : 1), hexadecimal ? 16 : 10);
  } else if (const auto hit = namedReferences().find(name); hit != namedReferences().end()) {
    code = hit->second;
  }
  return code < kUnicodeEnd ? utf8(code) : "";
}

std::string modelDecoded(const std::string& text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t end = text[i] == '&' ? text.find(';', i) : std::string::npos;
    const std::string put =
        end != std::string::npos ? modelReference(text.substr(i + 1, end - i - 1)) : "";
    decoded += put.empty() ? text.substr(i, 1) : put;
    i = put.empty() ? i : end;
  }
  return decoded;
}

/// What a reference of two digits stands for when a page is cleaned.
std::string modelCharacter(std::uint32_t code) {
  const std::uint32_t windows[] = {0x201A, 0x192,  0x201E, 0x2026, 0x2020, 0x2021, 0x2C6,  0x2030,
                                   0x160,  0x2039, 0x152,  0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                                   0x2013, 0x2014, 0x2DC,  0x2122, 0x161,  0x203A, 0x153};
  if (code < 127) {
    return code < 32 || std::isalnum(static_cast<int>(code)) ? "" : utf8(code);
  }
  const bool gap = code < 130 || (code > 140 && code < 144) || (code > 155 && code < 159);
  if (gap || code > 250) {
    return "";
  }
  if (code < 156) {
    return utf8(windows[code - (code < 144 ? 130 : 133)]);
  }
  switch (code) {
    case 166:
      return utf8(0x2025);
    case 173:
    case 188:
    case 203:
      return utf8(code + 2 + (code - 173) / 15) + utf8(code + 3 + (code - 173) / 15);
    default:
      return utf8(code + (code < 173 ? 2 : code < 188 ? 3 : code < 203 ? 4 : 5));
  }
}

void modelReplace(std::string& text, const std::string& start, int base) {
  std::size_t at = 0;
  while ((at = text.find(start, at)) != std::string::npos) {
    const std::size_t first = at + start.size();
    const auto digit = [&](std::size_t i) { return i < text.size() ? digitOf(text[i], base) : -1; };
    const int high = digit(first);
    if (high >= 0 && digit(first + 1) >= 0 && text[first + 2] == ';') {
      const int code = base * high + digit(first + 1);
      text.replace(at, start.size() + 3, modelCharacter(static_cast<std::uint32_t>(code)));
    } else if (high >= 0 && text[first + 1] == ';') {
      text.erase(at, start.size() + 2);
    } else {
      ++at;
    }
  }
}

void modelRemove(std::string& text, const std::string& part) {
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part)) {
    text.erase(at, part.size());
  }
}

void modelTrim(std::string& text) {
  const auto blank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
  while (text.size() > 1 && blank(text[0])) {
    text.erase(0, 1);
  }
  while (text.size() > 1 && blank(text.back())) {
    text.pop_back();
  }
  modelRemove(text, "&nbsp;");
  modelRemove(text, "&raquo;");
}

std::string freed(char* text) {
  std::string copy = text;
  std::free(text);
  return copy;
}

/// What is encoded is decoded again, and nothing is read or written beyond its end.
void runPercent(const std::string& text) {
  fuzz::Exact exact(text);
  fuzz::Exact encoded(freed(libquilp::url_encode(exact.text())));
  std::string expected = text;  // a "+" is kept, and stands for a blank
  std::replace(expected.begin(), expected.end(), '+', ' ');
  fuzz::expectText("a text that was encoded", freed(libquilp::url_decode(encoded.text())),
                   expected);
  fuzz::expect(freed(libquilp::url_decode(exact.text())).size() <= text.size(), "it grows");
  const int size = static_cast<int>(text.size());
  std::string room(3 * text.size() + 1, '#');
  fuzz::expect(StringConvert2PercentString(exact.text(), size, room.data(), 3 * size) ==
                       (size > 0 && size <= UINT16_MAX ? 0 : -1) &&
                   StringConvert2PercentString(exact.text(), size, room.data(), 3 * size - 1) == -1,
               "the escapes' status is another");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes = fuzz::bytesOf(data, size);
  const std::string text = fuzz::textOf(data, size);

  runPercent(text);
  fuzz::Exact decoded(text);
  const std::string inPlace(decoded.text(), decode_html_entities_utf8(decoded.text(), nullptr));
  fuzz::Exact room(text);
  const std::string copy(room.text(),
                         decode_html_entities_utf8(room.text(), fuzz::Exact(text).text()));
  fuzz::expectText("what is decoded in place", inPlace, copy);
  std::string replaced = bytes;
  replace_string(&replaced);
  std::string trimmed = bytes;
  fuzz::expect(&removeEmptyChar(trimmed) == &trimmed, "removeEmptyChar does not give its argument");

  if (size <= fuzz::kLongestModelled) {
    fuzz::expectText("the decoded text", copy, modelDecoded(text));
    std::string expected = bytes;
    modelReplace(expected, "&#x", 16);
    modelReplace(expected, "&#", 10);
    modelRemove(expected, "\r");
    modelRemove(expected, "\n");
    fuzz::expectText("the cleaned text", replaced, expected);
    expected = bytes;
    modelTrim(expected);
    fuzz::expectText("the trimmed text", trimmed, expected);
  }
  return 0;
}
