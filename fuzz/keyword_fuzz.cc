#include <cstring>

#include "fuzz.h"
#include "libquilp.h"

// Cleans any bytes as a keyword, and compares with a model that searches from the ends for each
// bracket and knows no regular expression.

namespace {

void blank(std::string& text, std::size_t from, std::size_t size) {
  text.replace(from, size, size, ' ');
}

void modelBrackets(std::string& text, char open, char close) {
  for (std::size_t at = text.rfind(open); at != std::string::npos; at = text.rfind(open)) {
    const std::size_t end = text.find(close, at);
    blank(text, at, end == std::string::npos ? 1 : end - at + 1);
  }
}

void modelTags(std::string& text) {
  for (const char* tag :
       {"1080p", "1080i", "720p", "BluRay", "x264-SPARKS", "x264-CHD", "x264-YYeTs", "x264", "YIFY",
        "DTS", "2Audio", "DD5.1", "3AUDIO-WAF", "HDTV", "FoV"}) {
    const std::size_t at = text.find(tag);
    if (at != std::string::npos) {
      blank(text, at, std::strlen(tag));
    }
  }
}

std::size_t pastDigits(const std::string& text, std::size_t at) {
  return std::min(text.find_first_not_of("0123456789", at), text.size());
}

// Neither sign can stand in a word: both are separators.
bool isYear(const std::string& word) {
  const std::size_t start = word.find_first_not_of("\t\n\v\f\r");
  if (start == std::string::npos) {
    return false;
  }
  const std::size_t first = std::min(word.find_first_not_of('0', start), word.size());
  const std::string digits = word.substr(first, pastDigits(word, first) - first);
  return digits.size() == 4 && digits >= "1900" && digits <= "2100";
}

bool isEpisode(const std::string& word) {
  if (word[0] != 's' && word[0] != 'S') {
    return false;
  }
  const std::size_t e = pastDigits(word, 1);
  return e > 1 && e < word.size() && (word[e] == 'e' || word[e] == 'E') &&
         pastDigits(word, e + 1) > e + 1;
}

std::string model(std::string text) {
  modelBrackets(text, '(', ')');
  modelBrackets(text, '[', ']');
  modelTags(text);
  const char* separators = " -_.~+";
  std::string words;
  for (std::size_t at = text.find_first_not_of(separators); at != std::string::npos;) {
    const std::size_t end = text.find_first_of(separators, at);
    const std::string word = text.substr(at, end - at);
    if (isYear(word) && !words.empty()) {
      break;
    }
    if (!isEpisode(word)) {
      words += (words.empty() ? "" : " ") + word;
    }
    at = text.find_first_not_of(separators, end);
  }
  return words;
}

std::string modelEncoded(const std::string& words) {
  const std::string kept = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  const std::string digits = "0123456789abcdef";
  std::string encoded;
  for (const char c : words) {
    const unsigned byte = static_cast<unsigned char>(c);
    encoded += kept.find(c) != std::string::npos
                   ? std::string(1, c)
                   : std::string{'%', digits[byte / 16], digits[byte % 16]};
  }
  return encoded;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::textOf(data, size);
  const std::string plain = ProcessKeyword(fuzz::Exact(text).text(), 0);
  const std::string encoded = ProcessKeyword(fuzz::Exact(text).text(), 1);
  if (text.size() <= fuzz::kLongestModelled) {
    fuzz::expectText("the keyword", plain, model(text));
    fuzz::expectText("the encoded keyword", encoded, modelEncoded(plain));
  }
  return 0;
}
