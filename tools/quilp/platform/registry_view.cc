#include "platform/registry_view.h"

#include <fcntl.h>
#include <iniparser.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform.h"
#include "plugin/run_program.h"
#include "text/place.h"

namespace quilp {
namespace {

using libquilp::RegistrySection;

// What this thread read last.
thread_local std::string parserMessage;

int keepParserMessage(const char* format, ...) {  // NOLINT(cert-dcl50-cpp): iniparser's type
  char text[256];
  va_list values;
  va_start(values, format);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start is above
  const int size = std::vsnprintf(text, sizeof text, format, values);
  va_end(values);
  parserMessage = text;
  return size;
}

/// From "iniparser: syntax error in FILE (LINE): ...".
std::string lineOfMessage() {
  const std::size_t start = parserMessage.find(" (") + 2;
  const std::size_t end = parserMessage.find(')', start);
  return start < 2 || end == std::string::npos ? "" : parserMessage.substr(start, end - start);
}

std::string quoted(const RegistrySection::Value& value) { return '"' + value.value_or("") + '"'; }

}  // namespace

void silenceIniParser() { iniparser_set_error_callback(&keepParserMessage); }

std::string RegistryView::problemOfFile() {
  if (faccessat(AT_FDCWD, libquilp::placeOf(libquilp::kRegistryFile), R_OK, AT_EACCESS) == 0) {
    return "is malformed at line " + lineOfMessage();
  }
  return errno == ENOENT ? kMissing : std::string("cannot be read: ") + std::strerror(errno);
}

RegistryView::RegistryView() {
  if (auto sections = libquilp::readRegistry(libquilp::kRegistryFile)) {
    sections_ = std::move(*sections);
  } else {
    problem_ = problemOfFile();
  }
}

const RegistryView& RegistryView::get() {
  static const RegistryView view;
  return view;
}

const RegistrySection* RegistryView::serving(const Media& media, Use use) const {
  const RegistrySection* section =
      libquilp::firstEnabledSection(sections_, media.type, asksOwnClassOnly(media, use));
  return section != nullptr && section->shell ? section : nullptr;
}

std::string RegistryView::obstacle(const RegistrySection& section, Use use) const {
  const Media* media = mediaOf(section.type.value_or(""));
  if (media == nullptr) {
    return "its Type, " + quoted(section.type) + ", is none of Movie, TV, Music and KTV";
  }
  if (!section.isEnabled()) {
    return "not enabled: Enable is " + quoted(section.enable) + ", not \"TRUE\"";
  }
  if (asksOwnClassOnly(*media, use) && !section.isOwnClass()) {
    return "its Class is " + quoted(section.ownerClass) + ", not \"" + libquilp::kOwnClass + '"';
  }
  const RegistrySection* first =
      libquilp::firstEnabledSection(sections_, media->type, asksOwnClassOnly(*media, use));
  if (first != &section) {
    return '[' + first->name + "] comes first";
  }
  return section.shell ? "" : "its name is too long";
}

std::string RegistryView::defect(const RegistrySection& section) {
  const std::string shell = section.shell.value_or("").substr(0, libquilp::kProgramSize);
  if (shell.empty()) {
    return "no Shell is given";
  }
  return libquilp::canBeExecuted(shell.c_str()) ? "" : shell + " cannot be executed";
}

std::string RegistryView::whyNone(const Media& media, Use use) const {
  if (!problem_.empty()) {
    return "the registry " + problem_;
  }
  std::string reasons;
  for (const RegistrySection& section : sections_) {
    if (section.type == media.type) {
      reasons += (reasons.empty() ? "[" : "; [") + section.name + "] " + obstacle(section, use);
    }
  }
  return reasons.empty() ? std::string("no section has the Type ") + media.type : reasons;
}

const Media* mediaOf(const std::string& type) {
  for (const Media& media : libquilp::kAllMedia) {
    if (type == media.type) {
      return &media;
    }
  }
  return nullptr;
}

}  // namespace quilp
