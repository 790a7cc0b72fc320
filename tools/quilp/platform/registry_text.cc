#include "platform/registry_text.h"

#include <algorithm>
#include <string_view>

#include "ascii.h"

namespace quilp {
namespace {

std::string_view stripped(std::string_view text) {
  const auto isBlank = [](char c) { return libquilp::isSpace(static_cast<unsigned char>(c)); };
  while (!text.empty() && isBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

std::string lower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), [](char c) {
    return static_cast<char>(libquilp::toLower(static_cast<unsigned char>(c)));
  });
  return result;
}

bool isComment(std::string_view line) {
  line = stripped(line);
  return !line.empty() && (line.front() == ';' || line.front() == '#');
}

/// A backslash at the end of a line joins the next one to it, but not to a comment.
bool isContinued(std::string_view line) {
  const std::string_view last = stripped(line.substr(line.rfind('\n', line.size() - 2) + 1));
  return !isComment(line) && !last.empty() && last.back() == '\\';
}

/// Where the value stands in a line "KEY = VALUE ; comment".
struct Place {
  std::size_t start;
  std::size_t end;
};

Place placeOfValue(const std::string& line) {
  const auto size =
      static_cast<std::size_t>(stripped(line).data() + stripped(line).size() - line.data());
  std::size_t start = line.find('=') + 1;
  while (start < size && libquilp::isSpace(static_cast<unsigned char>(line[start]))) {
    ++start;
  }
  const char quote = start < size ? line[start] : '\0';
  const std::size_t closing =
      quote == '"' || quote == '\'' ? line.find(quote, start + 1) : std::string::npos;
  if (closing < size) {
    return {start, closing + 1};
  }
  const std::size_t end = std::min(line.find_first_of(";#", start), size);
  return {start, start + stripped(line.substr(start, end - start)).size()};
}

/// A value with a character that starts a comment must be quoted.
std::string quoted(const std::string& value) {
  if (value.find_first_of(";#'\"\\") == std::string::npos) {
    return value;
  }
  const char quote = value.find('"') == std::string::npos ? '"' : '\'';
  return quote + value + quote;
}

}  // namespace

RegistryText::RegistryText(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    std::string line;
    do {
      const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
      line += text.substr(at, end - at);
      at = end;
    } while (at < text.size() && isContinued(line));
    const std::string_view words = stripped(line);
    if (words.size() > 1 && words.front() == '[' && words.back() == ']') {
      startBlock(lower(stripped(words.substr(1, words.size() - 2))));
    }
    blocks_.back().lines.push_back(line);
  }
  const bool hasReturns = text.find("\r\n") != std::string::npos;
  lineEnd_ = hasReturns ? "\r\n" : "\n";
  if (!text.empty() && text.back() != '\n') {
    blocks_.back().lines.back() += lineEnd_;
  }
}

void RegistryText::startBlock(const std::string& section) {
  std::vector<std::string>& before = blocks_.back().lines;
  const auto comment = std::find_if_not(before.rbegin(), before.rend(), isComment).base();
  Block block = {section, {comment, before.end()}};
  before.erase(comment, before.end());
  blocks_.push_back(std::move(block));
}

std::string RegistryText::text() const {
  std::string text;
  for (const Block& block : blocks_) {
    for (const std::string& line : block.lines) {
      text += line;
    }
  }
  return text;
}

RegistryText::Blocks::iterator RegistryText::find(const std::string& section) {
  return std::find_if(blocks_.begin() + 1, blocks_.end(),
                      [&section](const Block& block) { return block.section == section; });
}

void RegistryText::set(const std::string& section, const std::string& key,
                       const std::string& value) {
  bool found = false;
  for (Block& block : blocks_) {
    for (std::string& line : block.lines) {
      if (block.section == section && !isComment(line) &&
          lower(stripped(line.substr(0, line.find('=')))) == lower(key)) {
        const Place place = placeOfValue(line);
        line.replace(place.start, place.end - place.start, quoted(value));
        found = true;
      }
    }
  }
  const auto block = find(section);
  if (!found && block != blocks_.end()) {
    const auto name = std::find_if_not(block->lines.begin(), block->lines.end(), isComment);
    block->lines.insert(name + 1, key + '=' + quoted(value) + lineEnd_);
  }
}

void RegistryText::add(const std::string& section,
                       const std::vector<std::pair<std::string, std::string>>& values,
                       const std::string& before) {
  Block block = {section, {'[' + section + ']' + lineEnd_}};
  for (const auto& [key, value] : values) {
    block.lines.push_back(key + '=' + quoted(value) + lineEnd_);
  }
  const auto place = before.empty() ? blocks_.end() : find(before);
  if (place != blocks_.end()) {
    block.lines.push_back(lineEnd_);
  } else if (!blocks_.back().lines.empty() && !stripped(blocks_.back().lines.back()).empty()) {
    block.lines.insert(block.lines.begin(), lineEnd_);
  }
  blocks_.insert(place, std::move(block));
}

void RegistryText::moveBefore(const std::string& section, const std::string& other) {
  const auto from = find(section);
  if (from == blocks_.end() || find(other) == blocks_.end()) {
    return;
  }
  Block block = std::move(*from);
  blocks_.erase(from);
  if (!stripped(block.lines.back()).empty()) {
    block.lines.push_back(lineEnd_);
  }
  blocks_.insert(find(other), std::move(block));
}

}  // namespace quilp
