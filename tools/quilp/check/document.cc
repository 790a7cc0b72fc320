#include "check/document.h"

#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <pugixml.hpp>
#include <string_view>

#include "check/contents.h"
#include "output/utf8.h"
#include "plugin/files.h"
#include "plugin/record_table.h"
#include "xml/well_formed.h"

namespace quilp {
namespace {

using libquilp::XMLNode;

/// The reader tells only that it failed: this one tells where.
std::string parseFault(const std::string& text) {
  const libquilp::XMLFault fault = libquilp::findXMLFault(text);
  return fault.reason == nullptr ? "it cannot be read"
                                 : fault.reason + (" at line " + std::to_string(fault.line));
}

std::string topElements(const char* path) {
  pugi::xml_document document;
  document.load_file(path, pugi::parse_default, pugi::encoding_utf8);
  std::string names;
  for (const pugi::xml_node node : document.children()) {
    names += (names.empty() ? "" : ", ") + std::string(node.name());
  }
  return names.empty() ? "no element" : names;
}

/// What the declaration says; empty where there is none.
std::string declaredEncoding(const char* path) {
  pugi::xml_document document;
  document.load_file(path, pugi::parse_default | pugi::parse_declaration, pugi::encoding_utf8);
  return document.first_child().type() == pugi::node_declaration
             ? document.first_child().attribute("encoding").value()
             : "";
}

void judgeEncoding(const char* path, const std::string& text, Report& report) {
  const std::string declared = declaredEncoding(path);
  if (text.find('\0') != std::string::npos) {
    report.fail(clause::kEncoding, "a zero byte");
  } else if (validUtf8(text) != text) {
    report.fail(clause::kEncoding, "bytes that are no UTF-8");
  } else if (!declared.empty() && strcasecmp(declared.c_str(), "UTF-8") != 0 &&
             strcasecmp(declared.c_str(), "US-ASCII") != 0) {
    report.fail(clause::kEncoding, "encoding=\"" + declared + "\"");
  } else {
    report.pass(clause::kEncoding);
  }
}

}  // namespace

Document openDocument(const libquilp::Request& request, const char* path) {
  Document document;
  struct stat status = {};
  if (stat(path, &status) != 0) {
    document.fault = &clause::kDocument;
    document.found = "no file";
    return document;
  }
  if (!S_ISREG(status.st_mode) || status.st_size == 0) {
    document.fault = &clause::kDocument;
    document.found = S_ISREG(status.st_mode) ? "an empty file" : "no regular file";
    return document;
  }
  if (access(path, R_OK) != 0) {
    document.fault = &clause::kDocument;
    document.found = "a file that cannot be read";
    return document;
  }
  int error = 0;
  document.root = XMLNode::openFileHelper(path, &error, request.root);
  if (document.root) {
    document.results = resultsOf(request, document.root);
  } else if (error > 0) {
    document.fault = &clause::kWellFormed;
    document.found = parseFault(libquilp::readFile(path).value_or(""));
  } else {
    document.fault = &clause::kRoot;
    document.found = topElements(path) + " instead of " + request.root;
  }
  return document;
}

std::vector<std::string> Document::values(const libquilp::Request& request) const {
  std::vector<std::string> values;
  for (const XMLNode& result : results) {
    for (const Value& value : valuesOf(request, result)) {
      values.push_back(value.name + '=' + value.text);
    }
  }
  return values;
}

std::string Document::first(const char* element) const {
  return results.empty() ? "" : libquilp::firstClearOr(results.front().getChildNode(element), "");
}

void judgeOpening(const Document& document, const char* path, Report& report) {
  const std::optional<std::string> text =
      document.fault != &clause::kDocument ? libquilp::readFile(path) : std::nullopt;
  if (!text) {
    report.fail(clause::kDocument, document.found);
    for (const Clause* later : {&clause::kEncoding, &clause::kWellFormed, &clause::kRoot}) {
      report.skip(*later, "there is no document");
    }
    return;
  }
  report.pass(clause::kDocument);
  judgeEncoding(path, *text, report);
  if (document.fault == &clause::kWellFormed) {
    report.fail(clause::kWellFormed, document.found);
    report.skip(clause::kRoot, "the document cannot be read");
    return;
  }
  report.pass(clause::kWellFormed);
  if (document.fault == &clause::kRoot) {
    report.fail(clause::kRoot, document.found);
  } else {
    report.pass(clause::kRoot);
  }
}

}  // namespace quilp
