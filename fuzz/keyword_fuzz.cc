#include <cstring>
#include <regex>

#include "fuzz.h"
#include "libquilp.h"

// Cleans any bytes as a keyword, and compares with a model that searches from the ends for each
// bracket, and with regular expressions.

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

std::string model(std::string text) {
  static const std::regex year("[\\t-\\r]*0*(19[0-9][0-9]|20[0-9][0-9]|2100)([^0-9][^]*)?");
  static const std::regex episode("[sS][0-9]+[eE][0-9]+[^]*");
  modelBrackets(text, '(', ')');
  modelBrackets(text, '[', ']');
  modelTags(text);
  const char* separators = " -_.~+";
  std::string words;
  for (std::size_t at = text.find_first_not_of(separators); at != std::string::npos;) {
    const std::size_t end = text.find_first_of(separators, at);
    const std::string word = text.substr(at, end - at);
    if (std::regex_match(word, year) && !words.empty()) {
      break;
    }
    if (!std::regex_match(word, episode)) {
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
