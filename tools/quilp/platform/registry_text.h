#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quilp {

/// The registry as text, so that an edit leaves every other line as it is. Section names are in
/// lower case, as RegistrySection has them.
class RegistryText {
 public:
  explicit RegistryText(const std::string& text);

  std::string text() const;

  /// Gives a key of a section another value, or adds it. A comment after the value stays.
  void set(const std::string& section, const std::string& key, const std::string& value);

  /// Adds a section before another one, or at the end if `before` is empty.
  void add(const std::string& section,
           const std::vector<std::pair<std::string, std::string>>& values,
           const std::string& before);

  /// Moves a section, with the comment right above it, before another one.
  void moveBefore(const std::string& section, const std::string& other);

 private:
  /// A section's lines, from the comment right above its name on. The first block has no name: the
  /// lines before all sections.
  struct Block {
    std::string section;
    std::vector<std::string> lines;
  };
  using Blocks = std::vector<Block>;

  void startBlock(const std::string& section);
  Blocks::iterator find(const std::string& section);

  Blocks blocks_{{}};
  std::string lineEnd_ = "\n";
};

}  // namespace quilp
