#include "command/options.h"

#include <strings.h>

#include <cerrno>
#include <cstdlib>
#include <iostream>

namespace quilp {
namespace {

constexpr int kMostResults = 10000;

const char* nameOf(Format format) {
  switch (format) {
    case Format::kJson:
      return "json";
    case Format::kTable:
      return "table";
    case Format::kCsv:
      return "csv";
    case Format::kHtml:
      return "html";
    case Format::kXml:
      break;
  }
  return "xml";
}

}  // namespace

Take toText(std::string& text) {
  return [&text](const std::string& value) { text = value; };
}

Take toNumber(const std::string& name, int& number, int least, int most) {
  return [&number, name, least, most](const std::string& text) {
    char* end = nullptr;
    const bool isDigit = text.find_first_not_of("-0123456789") == std::string::npos;
    errno = 0;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (!isDigit || end == text.c_str() || *end != '\0') {
      throw WrongUsage(name + ": \"" + text + "\" is no number");
    }
    if (errno != 0 || value < least || value > most) {
      throw WrongUsage(name + ": " + text + " is not from " + std::to_string(least) + " to " +
                       std::to_string(most));
    }
    number = static_cast<int>(value);
  };
}

void addCount(Command& command, int& count) {
  command.options.push_back({'n', "", "N",
                             "Results wanted (default: " + std::to_string(count) + ")",
                             toNumber("-n", count, 1, kMostResults)});
}

void addLanguage(Command& command, std::string& language) {
  command.options.push_back({'l', "", "LANG",
                             "Language for an add-on (default: the one configured for it)",
                             toText(language)});
}

void addFormat(Command& command, Format& format, const std::vector<Format>& known) {
  Choices<Format> choices;
  choices.reserve(known.size());
  for (const Format one : known) {
    choices.emplace_back(nameOf(one), one);
  }
  format = known.front();
  command.options.push_back(
      choice("format", format, "How the result is printed (default: " + choices.front().first + ")",
             choices));
}

bool equalsWithoutCase(const std::string& a, const std::string& b) {
  return strcasecmp(a.c_str(), b.c_str()) == 0;
}

void List::addTo(Command& command, const std::string& name, const std::string& description) {
  name_ = name;
  command.operands.push_back({name, description + "; \"-\" reads a list from standard input",
                              [this](const std::string& word) { words_.push_back(word); }, false,
                              true});
  command.options.push_back({'0', "", "",
                             "Read a list from standard input, each name ended by a zero byte",
                             [this](const std::string&) { zeros_ = true; }});
}

void List::forEach(const Visit& visitOperand, const Visit& visitInput) const {
  if (!isGiven()) {
    throw WrongUsage(name_ + " is missing");
  }
  bool read = false;
  const auto readList = [&] {
    for (std::string word; !read && std::getline(std::cin, word, zeros_ ? '\0' : '\n');) {
      visitInput(word);
    }
    read = true;
  };
  for (const std::string& word : words_) {
    if (word == "-") {
      readList();
    } else {
      visitOperand(word);
    }
  }
  if (zeros_) {
    readList();
  }
}

std::vector<std::string> List::words() const {
  std::vector<std::string> words;
  forEach([&words](const std::string& word) { words.push_back(word); });
  return words;
}

}  // namespace quilp
