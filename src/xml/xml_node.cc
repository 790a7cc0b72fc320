#include "xml/xml_node.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <string>

#include "ascii.h"
#include "readable.h"
#include "xml/well_formed.h"

namespace libquilp {
namespace {

// Text stands as it was written but for the blanks at its ends: no line ends or blanks are
// rewritten.
constexpr unsigned kParseOptions =
    pugi::parse_cdata | pugi::parse_escapes | pugi::parse_trim_pcdata;
constexpr int kNoSuchElement = -1;

std::optional<std::string> readDocument(const char* path) {
  if (!isReadable(path)) {
    return std::nullopt;
  }
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rbe"), &std::fclose);
  if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) {
    return std::nullopt;
  }
  const long size = std::ftell(file.get());
  if (size < 0 || static_cast<unsigned long>(size) > kReadLimit) {
    return std::nullopt;
  }
  std::string text(static_cast<std::size_t>(size), '\0');
  std::rewind(file.get());
  if (std::fread(text.data(), 1, text.size(), file.get()) != text.size()) {
    return std::nullopt;
  }
  return text;
}

/// Only a byte order mark tells UTF-16. Else the bytes are taken as they are, whatever encoding the
/// document claims.
pugi::xml_encoding encodingOf(const std::string& text) {
  if (text.compare(0, 2, "\xFF\xFE") == 0) {
    return pugi::encoding_utf16_le;
  }
  return text.compare(0, 2, "\xFE\xFF") == 0 ? pugi::encoding_utf16_be : pugi::encoding_utf8;
}

unsigned char folded(char c) { return toLower(static_cast<unsigned char>(c)); }

bool sameName(const char* a, const char* b) {
  while (*a != '\0' && folded(*a) == folded(*b)) {
    ++a;
    ++b;
  }
  return folded(*a) == folded(*b);
}

int countOfType(pugi::xml_node node, pugi::xml_node_type type) {
  int n = 0;
  for (pugi::xml_node child : node.children()) {
    n += child.type() == type ? 1 : 0;
  }
  return n;
}

const char* valueOfType(pugi::xml_node node, pugi::xml_node_type type, int i) {
  for (pugi::xml_node child : node.children()) {
    if (child.type() == type && i-- == 0) {
      return child.value();
    }
  }
  return nullptr;
}

/// What pugixml cannot add without memory must not be missing from a document unseen.
void require(bool done) {
  if (!done) {
    throw std::bad_alloc();
  }
}

void appendEscaped(std::string& out, const char* text) {
  for (; *text != '\0'; ++text) {
    switch (*text) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\'':
        out += "&apos;";
        break;
      default:
        out += *text;
    }
  }
}

/// Writes one node and what is below it; walks by links, so that depth costs no stack.
class Writer {
 public:
  explicit Writer(bool formatted) : formatted_(formatted) {}

  std::string write(pugi::xml_node top) {
    pugi::xml_node node = top;
    while (node) {
      if (open(node)) {
        ++depth_;
        node = node.first_child();
        continue;
      }
      while (node != top && !node.next_sibling()) {
        node = node.parent();
        --depth_;
        close(node);
      }
      node = node == top ? pugi::xml_node() : node.next_sibling();
    }
    return std::move(out_);
  }

 private:
  /// True when the node's children come next.
  bool open(pugi::xml_node node) {
    indent();
    if (node.type() == pugi::node_pcdata) {
      appendEscaped(out_, node.value());
      endLine();
      return false;
    }
    const bool declaration = node.type() == pugi::node_declaration;
    out_ += declaration ? "<?" : "<";
    out_ += node.name();
    for (pugi::xml_attribute attribute : node.attributes()) {
      out_ += ' ';
      out_ += attribute.name();
      out_ += "=\"";
      appendEscaped(out_, attribute.value());
      out_ += '"';
    }
    const pugi::xml_node child = node.first_child();
    if (!child) {
      out_ += declaration ? "?>" : "/>";
      endLine();
      return false;
    }
    out_ += '>';
    if (child.type() == pugi::node_pcdata && !child.next_sibling()) {
      appendEscaped(out_, child.value());
      endTag(node);
      return false;
    }
    endLine();
    return true;
  }

  void close(pugi::xml_node node) {
    indent();
    endTag(node);
  }

  void endTag(pugi::xml_node node) {
    out_ += "</";
    out_ += node.name();
    out_ += '>';
    endLine();
  }

  void indent() {
    if (formatted_) {
      out_.append(depth_, '\t');
    }
  }

  void endLine() {
    if (formatted_) {
      out_ += '\n';
    }
  }

  const bool formatted_;
  std::size_t depth_ = 0;
  std::string out_;
};

}  // namespace

XMLNode XMLNode::openFileHelper(const char* path, int* error, const char* tag, IsOver isOver) {
  *error = static_cast<int>(pugi::status_file_not_found);
  std::optional<std::string> text = readDocument(path);
  if (!text) {
    return {};
  }
  const auto document = std::make_shared<Document>();
  document->isOver = std::move(isOver);
  pugi::xml_parse_result result =
      document->load_buffer(text->data(), text->size(), kParseOptions, encodingOf(*text));
  // pugixml reads more than well-formed documents. It goes first since it needs less memory for
  // elements without an end.
  if (result && findXMLFault(*text, document->isOver).reason != nullptr) {
    result.status = pugi::status_unrecognized_tag;
  }
  *error = static_cast<int>(result.status);
  if (!result) {
    return {};
  }
  XMLNode root = XMLNode(document, *document).getChildNode(tag);
  if (!root) {
    *error = kNoSuchElement;
  }
  return root;
}

XMLNode XMLNode::createXMLTopNode(const char* name, bool isDeclaration) {
  auto document = std::make_shared<Document>();
  pugi::xml_node node =
      document->append_child(isDeclaration ? pugi::node_declaration : pugi::node_element);
  require(node.set_name(name));
  return {document, node};
}

bool XMLNode::isOver(unsigned n) const {
  constexpr unsigned kUnchecked = 256;
  return n % kUnchecked == 0 && document_->isOver && document_->isOver();
}

bool XMLNode::isElement(pugi::xml_node node, const char* name) {
  return node.type() == pugi::node_element && sameName(node.name(), name);
}

int XMLNode::nChildNode() const { return countOfType(node_, pugi::node_element); }

int XMLNode::nChildNode(const char* name) const {
  int n = 0;
  forEachChild(name, [&n](const XMLNode&) { ++n; });
  return n;
}

XMLNode XMLNode::getChildNode(int i) const {
  for (pugi::xml_node child : node_.children()) {
    if (child.type() == pugi::node_element && i-- == 0) {
      return {document_, child};
    }
  }
  return {};
}

XMLNode XMLNode::getChildNode(const char* name, int i) const {
  for (pugi::xml_node child : node_.children()) {
    if (isElement(child, name) && i-- == 0) {
      return {document_, child};
    }
  }
  return {};
}

XMLNode XMLNode::getNextNode() const {
  pugi::xml_node next = node_.next_sibling();
  while (next && next.type() != pugi::node_element) {
    next = next.next_sibling();
  }
  return {document_, next};
}

int XMLNode::nClear() const { return countOfType(node_, pugi::node_cdata); }

XMLClear XMLNode::getClear(int i) const { return {valueOfType(node_, pugi::node_cdata, i)}; }

int XMLNode::nText() const { return countOfType(node_, pugi::node_pcdata); }

const char* XMLNode::getText(int i) const { return valueOfType(node_, pugi::node_pcdata, i); }

int XMLNode::nAttribute() const {
  int n = 0;
  for (auto attribute = node_.first_attribute(); attribute;
       attribute = attribute.next_attribute()) {
    ++n;
  }
  return n;
}

XMLAttribute XMLNode::getAttribute(int i) const {
  for (pugi::xml_attribute attribute : node_.attributes()) {
    if (i-- == 0) {
      return {attribute.name(), attribute.value()};
    }
  }
  return {nullptr, nullptr};
}

const char* XMLNode::getAttribute(const char* name) const {
  for (pugi::xml_attribute attribute : node_.attributes()) {
    if (sameName(attribute.name(), name)) {
      return attribute.value();
    }
  }
  return nullptr;
}

XMLNode XMLNode::addChild(const char* name) {
  // A declaration has no inside: what is added to it follows it.
  pugi::xml_node parent = node_.type() == pugi::node_declaration ? node_.parent() : node_;
  pugi::xml_node child = parent.append_child(pugi::node_element);
  require(!parent || child.set_name(name));
  return {document_, child};
}

void XMLNode::addAttribute(const char* name, const char* value) {
  pugi::xml_attribute attribute = node_.append_attribute(name);
  require(!node_ || (attribute.set_name(name) && attribute.set_value(value)));
}

void XMLNode::addText(const char* text) {
  if (text != nullptr && node_) {
    require(node_.append_child(pugi::node_pcdata).set_value(text));
  }
}

char* XMLNode::createXMLString(int formatted) const {
  std::string text;
  if (node_.type() == pugi::node_declaration) {
    for (pugi::xml_node node : node_.parent().children()) {
      text += Writer(formatted != 0).write(node);
    }
  } else if (node_) {
    text = Writer(formatted != 0).write(node_);
  }
  return strdup(text.c_str());
}

void freeXMLString(char* text) { free(text); }

}  // namespace libquilp
