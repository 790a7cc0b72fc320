#include "plugin/result_document.h"

#include <cstdio>

namespace libquilp {

void addTextChild(XMLNode& parent, const char* name, const char* value) {
  parent.addChild(name).addText(value);
}

ResultDocument::ResultDocument(const char* root)
    : declaration_(XMLNode::createXMLTopNode("xml", true)) {
  declaration_.addAttribute("version", "1.0");
  declaration_.addAttribute("encoding", "UTF-8");
  root_ = declaration_.addChild(root);
}

XMLNode ResultDocument::addEntry(const char* name, int index) {
  XMLNode entry = root_.addChild(name);
  char rank[16];
  std::snprintf(rank, sizeof rank, "%d", index + 1);
  entry.addAttribute("rank", rank);
  return entry;
}

void ResultDocument::print() const {
  char* text = declaration_.createXMLString(1);
  if (text != nullptr) {
    std::puts(text);
    freeXMLString(text);
  }
}

}  // namespace libquilp
