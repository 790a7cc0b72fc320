#pragma once

#include <string>
#include <vector>

#include "lookup/request.h"
#include "plugin/registry.h"

namespace quilp {

using libquilp::Media;
using libquilp::Use;

/// iniparser would write a message about a malformed file at each lookup. To be called first.
void silenceIniParser();

/// The registry file as lookups read it.
class RegistryView {
 public:
  static const RegistryView& get();

  /// Why the file could not be read; empty when it could.
  const std::string& problem() const { return problem_; }
  bool isMissing() const { return problem_ == kMissing; }
  const std::vector<libquilp::RegistrySection>& sections() const { return sections_; }

  /// The section whose add-on is asked; null for the built-in route.
  const libquilp::RegistrySection* serving(const Media& media, Use use) const;

  /// Why the add-on of a section is not asked; empty when it is.
  std::string obstacle(const libquilp::RegistrySection& section, Use use) const;

  /// Why the add-on of a section cannot be started; empty when it can.
  static std::string defect(const libquilp::RegistrySection& section);

  /// Says in one line why no add-on of the type is asked.
  std::string whyNone(const Media& media, Use use) const;

 private:
  static constexpr char kMissing[] = "is missing";

  RegistryView();
  static std::string problemOfFile();

  std::string problem_;
  std::vector<libquilp::RegistrySection> sections_;
};

/// The kind of media of a type, as the registry spells it; null for any other text.
const Media* mediaOf(const std::string& type);

}  // namespace quilp
