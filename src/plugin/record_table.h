#pragma once

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "plugin/files.h"
#include "plugin/result_document.h"
#include "xml/xml_node.h"

// A record is a table: each line says which element of a document stands for which member. Reading,
// printing and releasing are loops over such tables.

namespace libquilp {

using Strings = std::vector<std::string>;

template <class Record>
struct Field {
  const char* element;
  char* Record::*text = nullptr;
  Strings Record::*list = nullptr;   // repeated elements; with `roles`, the names of a cast
  Strings Record::*roles = nullptr;  // parallel to `list`
  bool leftOutWhenNull = false;      // in print; other fields then give an empty element
};

template <class Record>
constexpr Field<Record> textField(const char* element, char* Record::*text) {
  return {element, text};
}

template <class Record>
constexpr Field<Record> leftOutWhenNull(const char* element, char* Record::*text) {
  return {element, text, nullptr, nullptr, true};
}

template <class Record>
constexpr Field<Record> listField(const char* element, Strings Record::*list) {
  return {element, nullptr, list};
}

template <class Record>
constexpr Field<Record> castField(const char* element, Strings Record::*names,
                                  Strings Record::*roles) {
  return {element, nullptr, names, roles};
}

/// An element's first CDATA section; null when it has none. Text outside CDATA does not count.
inline const char* firstClear(const XMLNode& element) {
  return element.nClear() > 0 ? element.getClear(0).lpszValue : nullptr;
}

/// Appends one actor. One without a name is skipped; one without a role is an add-on's error that
/// leaves the call.
inline void readActor(const XMLNode& actor, Strings& names, Strings& roles) {
  const char* name = firstClear(actor.getChildNode("name"));
  if (name == nullptr) {
    return;
  }
  names.emplace_back(name);
  const char* role = firstClear(actor.getChildNode("role"));
  if (role == nullptr) {
    throw std::logic_error("basic_string::_S_construct NULL not valid");
  }
  roles.emplace_back(role);
}

/// Fills the record from the children of `element`, in the table's order; lists are appended to.
template <class Record, std::size_t N>
void readRecord(const XMLNode& element, const Field<Record> (&table)[N], Record& record) {
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      record.*field.text = SafeStrdup(firstClear(element.getChildNode(field.element)));
      continue;
    }
    element.forEachChild(field.element, [&](const XMLNode& entry) {
      if (field.roles != nullptr) {
        readActor(entry, record.*field.list, record.*field.roles);
      } else if (const char* value = firstClear(entry)) {
        (record.*field.list).emplace_back(value);
      }
    });
  }
}

/// Adds the record's fields to `element`, in the table's order.
template <class Record, std::size_t N>
void writeRecord(XMLNode& element, const Field<Record> (&table)[N], const Record& record) {
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      const char* value = record.*field.text;
      if (value != nullptr || !field.leftOutWhenNull) {
        addTextChild(element, field.element, value);
      }
      continue;
    }
    const Strings& list = record.*field.list;
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (field.roles == nullptr) {
        addTextChild(element, field.element, list[i].c_str());
        continue;
      }
      const Strings& roles = record.*field.roles;
      XMLNode actor = element.addChild(field.element);
      addTextChild(actor, "name", list[i].c_str());
      addTextChild(actor, "role", i < roles.size() ? roles[i].c_str() : nullptr);
    }
  }
}

/// Sets the text fields to null; lists stay as they are.
template <class Record, std::size_t N>
void clearTexts(const Field<Record> (&table)[N], Record& record) {
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      record.*field.text = nullptr;
    }
  }
}

/// Releases the text fields; the pointers stay as they are.
template <class Record, std::size_t N>
void freeTexts(const Field<Record> (&table)[N], const Record& record) {
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      std::free(record.*field.text);
    }
  }
}

template <class Record, std::size_t N>
void freeRecords(const Field<Record> (&table)[N], Record* records, int count) {
  if (records == nullptr) {
    return;
  }
  for (int i = 0; i < count; ++i) {
    freeTexts(table, records[i]);
  }
  std::free(records);
}

/// An array of records for a caller, zeroed; there is room for one even when none are asked for.
template <class Record>
Record* allocateRecords(int count) {
  return static_cast<Record*>(
      std::calloc(count > 0 ? static_cast<std::size_t>(count) : 1, sizeof(Record)));
}

/// Reads a list document: one record for each child `entry` of `root`, in an array for the caller,
/// which is stored also when it is empty. Returns the number of records.
template <class Record, std::size_t N>
int readRecords(const XMLNode& root, const char* entry, const Field<Record> (&table)[N],
                Record** records) {
  *records = allocateRecords<Record>(root.nChildNode(entry));
  if (*records == nullptr) {
    return 0;
  }
  int n = 0;
  root.forEachChild(entry,
                    [&](const XMLNode& element) { readRecord(element, table, (*records)[n++]); });
  return n;
}

}  // namespace libquilp
