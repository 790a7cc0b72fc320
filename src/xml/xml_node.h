#pragma once

#include <functional>
#include <memory>
#include <pugixml.hpp>
#include <utility>

namespace libquilp {

struct XMLClear {
  const char* lpszValue;  // contents of a CDATA section, unchanged
};

/// Whether there is no more time for a document; none: there always is.
using IsOver = std::function<bool()>;

struct XMLAttribute {
  const char* lpszName;
  const char* lpszValue;
};

/// A node of a document that is held as long as one of its nodes is. Names are compared without
/// regard to ASCII case. Every call is safe on an empty node: it gives 0, null or another empty
/// one. Strings that are handed out live as long as the document. What is added is added whole:
/// without memory it throws std::bad_alloc.
class XMLNode {
 public:
  XMLNode() = default;

  /// Reads the file and gives its first top-level element named `tag`. Sets `*error` to 0, or to
  /// another value when there is no file, no well-formed document or no such element. Reading, and
  /// each walk through the document's children, ends early once `isOver`.
  static XMLNode openFileHelper(const char* path, int* error, const char* tag,
                                IsOver isOver = nullptr);

  /// A new document's top node; as a declaration it stands before its children, not around them.
  static XMLNode createXMLTopNode(const char* name, bool isDeclaration);

  explicit operator bool() const { return static_cast<bool>(node_); }

  int nChildNode() const;
  int nChildNode(const char* name) const;
  XMLNode getChildNode(int i) const;
  XMLNode getChildNode(const char* name, int i = 0) const;
  /// The next element under the same parent.
  XMLNode getNextNode() const;

  /// Calls visit(child) for each child element of that name, in document order: one walk, where
  /// getChildNode by index starts anew for each.
  template <class Visit>
  void forEachChild(const char* name, Visit visit) const {
    unsigned n = 0;
    for (pugi::xml_node child : node_.children()) {
      if (isOver(n++)) {
        return;
      }
      if (isElement(child, name)) {
        visit(XMLNode(document_, child));
      }
    }
  }

  int nClear() const;
  XMLClear getClear(int i = 0) const;
  int nText() const;
  const char* getText(int i = 0) const;

  int nAttribute() const;
  XMLAttribute getAttribute(int i) const;
  const char* getAttribute(const char* name) const;

  /// Calls visit(attribute) for each attribute, in their order: one walk.
  template <class Visit>
  void forEachAttribute(Visit visit) const {
    for (pugi::xml_attribute attribute : node_.attributes()) {
      visit(XMLAttribute{attribute.name(), attribute.value()});
    }
  }

  XMLNode addChild(const char* name);
  void addAttribute(const char* name, const char* value);
  /// A null text adds nothing.
  void addText(const char* text);

  /// The node and what is below it, indented by tabs and ending in a line feed; released with
  /// freeXMLString. Null when memory runs out.
  char* createXMLString(int formatted = 1) const;

 private:
  struct Document : pugi::xml_document {
    IsOver isOver;
  };

  XMLNode(std::shared_ptr<Document> document, pugi::xml_node node)
      : document_(std::move(document)), node_(node) {}

  /// Whether a walk ends before its child number `n`.
  bool isOver(unsigned n) const;
  static bool isElement(pugi::xml_node node, const char* name);

  std::shared_ptr<Document> document_;
  pugi::xml_node node_;
};

void freeXMLString(char* text);

}  // namespace libquilp
