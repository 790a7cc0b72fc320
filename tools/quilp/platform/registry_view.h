#pragma once

#include <string>
#include <vector>

#include "lookup/request.h"
#include "plugin/registry.h"

namespace quilp {

using libquilp::Media;
using libquilp::Use;

/// The registry file as the library's lookups read it. It is read once: the parser complains of a
/// malformed one each time.
class RegistryView {
 public:
  static const RegistryView& get();

  /// Why there are no sections to look at; empty when the file was read.
  const std::string& problem() const { return problem_; }
  const std::vector<libquilp::RegistrySection>& sections() const { return sections_; }

  /// The section whose add-on is asked; null when the library does the work itself.
  const libquilp::RegistrySection* serving(const Media& media, Use use) const;

  /// Why a section is not the one that serves; empty when it is.
  std::string obstacle(const libquilp::RegistrySection& section, Use use) const;

  /// What keeps an add-on that is asked from answering; empty for nothing.
  static std::string defect(const libquilp::RegistrySection& section);

  /// Why no section of the type serves, in one line.
  std::string whyNone(const Media& media, Use use) const;

 private:
  RegistryView();

  std::string problem_;
  std::vector<libquilp::RegistrySection> sections_;
};

/// The kind of media of a type, as the registry spells it; null for any other text.
const Media* mediaOf(const std::string& type);

}  // namespace quilp
