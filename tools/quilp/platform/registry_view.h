#pragma once

#include <string>
#include <vector>

#include "plugin/registry.h"

namespace quilp {

/// A kind of media that the library knows.
struct Media {
  enum class Print {
    kNone,       // there are no print functions
    kAsRecords,  // they ask the add-on that the other functions ask
    kByType      // they ask the first one of any class
  };

  const char* type;
  Print print;
};
inline constexpr Media kMovie = {"Movie", Media::Print::kAsRecords};
inline constexpr Media kTV = {"TV", Media::Print::kAsRecords};
inline constexpr Media kMusic = {"Music", Media::Print::kByType};
inline constexpr Media kKTV = {"KTV", Media::Print::kNone};
inline constexpr Media kMedia[] = {kMovie, kTV, kMusic, kKTV};

/// The functions of the library that look an add-on up in the same way.
enum class Use { kRecords, kPrint };

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
