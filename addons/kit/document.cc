#include "document.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "text/utf8.h"

namespace quilp::kit {
namespace {

bool isAllowed(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  if (first < 0x20) {
    return first == '\t' || first == '\n' || first == '\r';
  }
  return character != "\xEF\xBF\xBE" && character != "\xEF\xBF\xBF";
}

/// Without what XML does not allow.
std::string allowed(std::string_view bytes) {
  std::string text;
  libquilp::forEachCharacter(bytes, [&text](std::string_view character) {
    if (character.empty()) {
      text += "\xEF\xBF\xBD";
    } else if (isAllowed(character)) {
      text += character;
    }
  });
  return text;
}

}  // namespace

Document::Document(const std::string& root)
    : text_("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") {
  open(root);
}

void Document::indent() { text_.append(open_.size(), '\t'); }

void Document::open(const std::string& name) {
  indent();
  text_.append("<").append(name).append(">\n");
  open_.push_back(name);
}

void Document::close() {
  const std::string name = std::move(open_.back());
  open_.pop_back();
  indent();
  text_.append("</").append(name).append(">\n");
}

void Document::value(const std::string& name, std::string_view bytes) {
  std::string section = allowed(bytes);
  for (std::size_t at = 0; (at = section.find("]]>", at)) != std::string::npos; at += 3) {
    section.insert(at + 2, 1, ' ');
  }
  indent();
  text_.append("<").append(name).append("><![CDATA[").append(section);
  text_.append("]]></").append(name).append(">\n");
}

void Document::plain(const std::string& name, std::string_view bytes,
                     const Attributes& attributes) {
  indent();
  text_.append("<").append(name);
  for (const auto& [attribute, number] : attributes) {
    text_.append(" ").append(attribute).append("=\"").append(std::to_string(number)).append("\"");
  }
  text_.append(">");
  for (const char c : allowed(bytes)) {
    switch (c) {
      case '&':
        text_ += "&amp;";
        break;
      case '<':
        text_ += "&lt;";
        break;
      case '>':
        text_ += "&gt;";
        break;
      default:
        text_ += c;
    }
  }
  text_.append("</").append(name).append(">\n");
}

const std::string& Document::text() {
  while (!open_.empty()) {
    close();
  }
  return text_;
}

void Document::write(const std::string& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0) {
    throw std::runtime_error(path + ": " + std::strerror(errno));
  }
  struct stat status {};
  const bool isFile = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
  std::string_view rest = text();
  int error = 0;
  while (error == 0 && !rest.empty()) {
    const ssize_t written = ::write(file, rest.data(), rest.size());
    if (written > 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0 || errno != EINTR) {
      error = written == 0 ? EIO : errno;
    }
  }
  if (::close(file) != 0 && error == 0) {
    error = errno;
  }
  if (error != 0) {
    if (isFile) {
      unlink(path.c_str());
    }
    throw std::runtime_error(path + ": " + std::strerror(error));
  }
}

}  // namespace quilp::kit
