#include "output/document.h"

#include <iostream>
#include <pugixml.hpp>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "output/json_output.h"
#include "output/table.h"
#include "text/entities.h"

namespace quilp {
namespace {

/// What a document itself does not show.
struct Kind {
  const char* root;
  const char* entry;                  // of a list; null for the document of one record
  std::vector<const char*> repeated;  // elements that may occur several times
  Table::Row columns;
};

const Kind& kindOf(std::string_view root) {
  static const std::vector<Kind> kKinds = {
      {"movielist", "movie", {}, {"rank", "id", "title", "year"}},
      {"tvshowlist", "tvshow", {}, {"rank", "id", "title", "first_air_date"}},
      {"albumlist", "album", {}, {"rank", "artist", "name", "releasedate"}},
      {"titlelist", "entry", {}, {"id", "title", "year", "type", "rating", "votes"}},
      {"artistthumbnail", "url", {}, {"url"}},
      {"movie", nullptr, {"director", "genre", "actor"}, {}},
      {"tvshow", nullptr, {"networks", "creator", "genre", "genres", "actor"}, {}},
      {"tvepisode", nullptr, {"genre", "actor", "director"}, {}},
  };
  for (const Kind& kind : kKinds) {
    if (kind.root == root) {
      return kind;
    }
  }
  throw std::runtime_error("unknown document");
}

/// A document as the library prints it.
class Document {
 public:
  explicit Document(const std::string& text) {
    if (!document_.load_buffer(text.data(), text.size())) {
      throw std::runtime_error("the document is not well-formed: it can only be had as it is");
    }
  }
  pugi::xml_node root() const { return document_.document_element(); }
  const Kind& kind() const { return kindOf(root().name()); }

 private:
  pugi::xml_document document_;
};

bool isRepeated(const Kind& kind, std::string_view name) {
  for (const char* repeated : kind.repeated) {
    if (repeated == name) {
      return true;
    }
  }
  return false;
}

/// The text of an element. A site's text may hold character references.
std::string valueOf(pugi::xml_node element) { return libquilp::decoded(element.child_value()); }

Json::Value jsonOfElement(const Kind& kind, pugi::xml_node element) {
  const bool isRecord =
      element.find_child([](pugi::xml_node child) { return child.type() == pugi::node_element; });
  if (!isRecord) {
    return jsonText(valueOf(element));
  }
  Json::Value value(Json::objectValue);
  if (const pugi::xml_attribute rank = element.attribute("rank")) {
    value["rank"] = rank.as_int();
  }
  for (const pugi::xml_node child : element.children()) {
    Json::Value inner = jsonOfElement(kind, child);
    Json::Value& member = value[child.name()];
    if (!isRepeated(kind, child.name())) {
      member = std::move(inner);
    } else if (!inner.isNull()) {
      member.append(std::move(inner));
    }
  }
  return value;
}

/// The entries with any text: a search without results prints one that has none.
std::vector<pugi::xml_node> entriesOf(const Document& document) {
  std::vector<pugi::xml_node> entries;
  for (const pugi::xml_node entry : document.root().children(document.kind().entry)) {
    if (entry.find_node([](pugi::xml_node node) { return *node.value() != '\0'; })) {
      entries.push_back(entry);
    }
  }
  return entries;
}

std::string cell(pugi::xml_node entry, const std::string& column) {
  if (column == "rank") {
    return entry.attribute("rank").value();
  }
  return valueOf(column == entry.name() ? entry : entry.child(column.c_str()));
}

bool printEntries(const Document& document) {
  const std::vector<pugi::xml_node> entries = entriesOf(document);
  if (entries.empty()) {
    return true;
  }
  Table table(document.kind().columns);
  for (const pugi::xml_node entry : entries) {
    Table::Row row;
    for (const std::string& column : document.kind().columns) {
      row.push_back(cell(entry, column));
    }
    table.addRow(row);
  }
  return table.print();
}

bool printRecord(const Document& document) {
  for (const pugi::xml_node element : document.root().children()) {
    const std::string role = valueOf(element.child("role"));
    std::string value = valueOf(element.child("name"));
    if (value.empty()) {
      value = valueOf(element);
    } else if (!role.empty()) {
      value.append(" as ").append(role);
    }
    printLine(element.name(), value);
  }
  return static_cast<bool>(std::cout.flush());
}

}  // namespace

bool holdsText(const std::string& document) {
  for (std::size_t at = 0; (at = document.find('>', at)) != std::string::npos;) {
    at = document.find_first_not_of(" \t\r\n", at + 1);
    if (at == std::string::npos) {
      return false;
    }
    constexpr std::string_view kSection = "<![CDATA[";
    const bool section = document.compare(at, kSection.size(), kSection) == 0;
    at += section ? kSection.size() : 0;
    if (document.compare(at, 1, section ? "]" : "<") != 0) {
      return true;
    }
  }
  return false;
}

Json::Value jsonOfDocument(const std::string& text) {
  const Document document(text);
  const Kind& kind = document.kind();
  if (kind.entry == nullptr) {
    Json::Value record = jsonOfElement(kind, document.root());
    for (const char* name : kind.repeated) {
      if (record[name].isNull()) {
        record[name] = Json::Value(Json::arrayValue);
      }
    }
    return record;
  }
  Json::Value entries(Json::arrayValue);
  for (const pugi::xml_node entry : entriesOf(document)) {
    entries.append(jsonOfElement(kind, entry));
  }
  return entries;
}

bool printAsTable(const std::string& text) {
  const Document document(text);
  return document.kind().entry != nullptr ? printEntries(document) : printRecord(document);
}

}  // namespace quilp
