#pragma once

#include <string>

#include "xml/xml_node.h"

namespace libquilp {

/// Adds an element with a text to `parent`; a null value gives an element without text.
void addTextChild(XMLNode& parent, const char* name, const char* value);

/// The same, but the text becomes a CDATA section when the document is printed decoded.
void addClearChild(XMLNode& parent, const char* name, const char* value);

using AddChild = void (*)(XMLNode& parent, const char* name, const char* value);

/// The XML document that a print function writes.
class ResultDocument {
 public:
  explicit ResultDocument(const char* root);

  XMLNode& root() { return root_; }

  /// Adds an entry to a list document; `index` counts from 0, its rank from 1.
  XMLNode addEntry(const char* name, int index);

  /// The document with a final line feed.
  std::string text() const;

  /// The same, but with the character references of the whole document decoded.
  std::string decodedText() const;

 private:
  XMLNode declaration_;
  XMLNode root_;
};

}  // namespace libquilp
