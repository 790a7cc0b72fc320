#include "record/recording.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "plugin/files.h"

namespace quilp {
namespace {

constexpr std::string_view kFirstLine = "quilp recording 1\n";
constexpr std::string_view kAnyVersion = "quilp recording ";

void add(std::string& text, const char* name, const std::string& value) {
  text.append(name).append(" ").append(std::to_string(value.size())).append("\n");
  text.append(value).append("\n");
}

template <class Value>
void addEach(std::string& text, const char* name, Value value, Value end) {
  for (; value != end; ++value) {
    add(text, name, *value);
  }
}

void addOptional(std::string& text, const char* name, const std::optional<std::string>& value) {
  if (value) {
    add(text, name, *value);
  }
}

void addExchange(std::string& text, const char* kind, const char* answer,
                 const Exchange& exchange) {
  text += '\n';
  add(text, kind, exchange.question.front());
  addEach(text, "argument", exchange.question.begin() + 1, exchange.question.end());
  addEach(text, "variable", exchange.variables.begin(), exchange.variables.end());
  if (exchange.error != 0) {
    add(text, "error", std::to_string(exchange.error));
  }
  add(text, "status", std::to_string(exchange.status));
  if (exchange.cut) {
    add(text, "cut", "time");
  }
  addOptional(text, "headers", exchange.headers);
  addOptional(text, answer, exchange.answer);
}

/// Reads section after section.
class Reader {
 public:
  Reader(const std::string& source, std::string_view text) : source_(source), text_(text) {}

  /// False at the end.
  bool next() {
    if (at_ == text_.size()) {
      return false;
    }
    const std::size_t space = text_.find(' ', at_);
    const std::size_t line = text_.find('\n', at_);
    if (line == std::string_view::npos || space > line) {
      fail();
    }
    name_ = text_.substr(at_, space - at_);
    const std::size_t size = number(text_.substr(space + 1, line - space - 1));
    if (size >= text_.size() - line - 1 || text_[line + 1 + size] != '\n') {
      fail();
    }
    value_ = text_.substr(line + 1, size);
    at_ = line + 1 + size + 1;
    while (at_ < text_.size() && text_[at_] == '\n') {
      ++at_;
    }
    return true;
  }

  bool is(std::string_view name) const { return name_ == name; }
  std::string value() const { return std::string(value_); }
  int intValue() const {
    const bool isNegative = value_.substr(0, 1) == "-";
    const auto size = static_cast<int>(number(value_.substr(isNegative ? 1 : 0)));
    return isNegative ? -size : size;
  }

  [[noreturn]] void fail() const {
    throw std::runtime_error(source_ + " is damaged near byte " + std::to_string(at_));
  }

 private:
  std::size_t number(std::string_view digits) const {
    constexpr std::size_t kMostDigits = 9;
    if (digits.empty() || digits.size() > kMostDigits ||
        digits.find_first_not_of("0123456789") != std::string_view::npos) {
      fail();
    }
    return std::strtoul(std::string(digits).c_str(), nullptr, 10);
  }

  const std::string& source_;
  std::string_view text_;
  std::string_view name_;
  std::string_view value_;
  std::size_t at_ = kFirstLine.size();
};

bool takePart(const Reader& section, Exchange& exchange) {
  if (section.is("argument")) {
    exchange.question.push_back(section.value());
  } else if (section.is("variable")) {
    exchange.variables.push_back(section.value());
  } else if (section.is("error")) {
    exchange.error = section.intValue();
  } else if (section.is("status")) {
    exchange.status = section.intValue();
  } else if (section.is("cut")) {
    exchange.cut = true;
  } else if (section.is("headers")) {
    exchange.headers = section.value();
  } else if (section.is("document") || section.is("page")) {
    exchange.answer = section.value();
  } else {
    return false;
  }
  return true;
}

}  // namespace

std::string Recording::text() const {
  std::string text(kFirstLine);
  addEach(text, "word", words.begin(), words.end());
  for (const auto& [path, contents] : files) {
    add(text, "file", path);
    add(text, "contents", contents);
  }
  for (const Exchange& exchange : addOns) {
    addExchange(text, "add-on", "document", exchange);
  }
  for (const Exchange& exchange : fetches) {
    addExchange(text, "curl", "page", exchange);
  }
  text += '\n';
  for (const auto& [marker, found] : markers) {
    add(text, found ? "marker" : "missing-marker", marker);
  }
  add(text, "end", "");
  return text;
}

Recording readRecording(const std::string& file) {
  const auto text = libquilp::readFile(file.c_str());
  if (!text) {
    throw std::runtime_error("cannot read " + file);
  }
  return parseRecording(file, *text);
}

Recording parseRecording(const std::string& name, const std::string& text) {
  if (text.compare(0, kFirstLine.size(), kFirstLine) != 0) {
    const bool isOther = text.compare(0, kAnyVersion.size(), kAnyVersion) == 0;
    throw std::runtime_error(name + (isOther ? " was recorded by another version of quilp"
                                             : " is no recording of quilp"));
  }
  Recording recording;
  Exchange* exchange = nullptr;
  std::string* contents = nullptr;
  bool ended = false;
  Reader section(name, text);
  while (section.next()) {
    if (ended) {
      section.fail();
    }
    if (section.is("word")) {
      recording.words.push_back(section.value());
    } else if (section.is("file")) {
      contents = &recording.files[section.value()];
    } else if (section.is("contents") && contents != nullptr) {
      *contents = section.value();
    } else if (section.is("add-on") || section.is("curl")) {
      auto& list = section.is("curl") ? recording.fetches : recording.addOns;
      exchange = &list.emplace_back();
      exchange->question.push_back(section.value());
    } else if (section.is("marker") || section.is("missing-marker")) {
      recording.markers[section.value()] = section.is("marker");
    } else if (section.is("end")) {
      ended = true;
    } else if (exchange == nullptr || !takePart(section, *exchange)) {
      section.fail();
    }
  }
  if (!ended || recording.words.empty()) {
    section.fail();
  }
  return recording;
}

}  // namespace quilp
