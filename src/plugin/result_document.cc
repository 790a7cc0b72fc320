#include "plugin/result_document.h"

#include <cstdio>
#include <memory>
#include <new>
#include <string>

#include "libquilp.h"

namespace libquilp {
namespace {

struct FreeText {
  void operator()(char* text) const { freeXMLString(text); }
};
using Text = std::unique_ptr<char, FreeText>;

Text writtenOut(const XMLNode& document) {
  Text text(document.createXMLString(1));
  if (!text) {
    throw std::bad_alloc();
  }
  return text;
}

}  // namespace

void addTextChild(XMLNode& parent, const char* name, const char* value) {
  parent.addChild(name).addText(value);
}

void addClearChild(XMLNode& parent, const char* name, const char* value) {
  XMLNode child = parent.addChild(name);
  if (value != nullptr) {
    child.addText((std::string("<![CDATA[") + value + "]]>").c_str());
  }
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

std::string ResultDocument::text() const {
  return std::string(writtenOut(declaration_).get()) + '\n';
}

std::string ResultDocument::decodedText() const {
  const Text text = writtenOut(declaration_);
  decode_html_entities_utf8(text.get(), nullptr);
  return std::string(text.get()) + '\n';
}

}  // namespace libquilp
