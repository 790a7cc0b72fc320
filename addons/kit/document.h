#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quilp::kit {

/// The document of an add-on. It is always well-formed: bytes that are not UTF-8 become U+FFFD,
/// characters that XML does not allow are left out, and "]]>" becomes "]] >", as a value has to be
/// one CDATA section.
class Document {
 public:
  explicit Document(const std::string& root);

  /// Elements up to close() are inside this one.
  void open(const std::string& name);
  void close();

  /// An element with its value in a CDATA section.
  void value(const std::string& name, std::string_view text);

  /// An element with plain text, as karaoke has it, and attributes, whose values are numbers.
  using Attributes = std::vector<std::pair<std::string, int>>;
  void plain(const std::string& name, std::string_view text, const Attributes& attributes = {});

  /// The whole document; closes all elements.
  const std::string& text();

  /// Writes the document. Throws std::runtime_error; no file is left then.
  void write(const std::string& path);

 private:
  void indent();

  std::string text_;
  std::vector<std::string> open_;
};

}  // namespace quilp::kit
