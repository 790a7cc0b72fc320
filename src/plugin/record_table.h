#pragma once

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "plugin/files.h"
#include "plugin/result_document.h"
#include "xml/xml_node.h"

// A record is a table: each line maps an element of a document to a member of the record. Reading,
// printing and releasing are loops over such tables.

namespace libquilp {

using Strings = std::vector<std::string>;

/// How a missing value is treated.
enum class Missing {
  kEmptyElement,  // a null text is printed as an element without text
  kLeftOut,       // a null text is not printed
  kEmptyText,     // a null text is printed as an empty one
  kNoText,        // an empty text is printed as a null one
  kOneElement,    // lists: an empty value is not read, and an empty list is printed as one element
                  // without text; what an actor lacks is empty, and a cast that is not in pairs is
                  // printed as an empty list
};

/// A constant array of any length.
template <class T>
class Items {
 public:
  constexpr Items() = default;
  template <std::size_t N>
  constexpr Items(const T (&items)[N])
      : first_(items), size_(N) {}  // NOLINT(google-explicit-constructor)

  constexpr const T* begin() const { return first_; }
  constexpr const T* end() const { return first_ + size_; }
  constexpr bool empty() const { return size_ == 0; }

 private:
  const T* first_ = nullptr;
  std::size_t size_ = 0;
};

template <class Record>
struct Field {
  const char* element;
  char* Record::*text = nullptr;
  Strings Record::*list = nullptr;   // repeated elements; with `roles`, the names of a cast
  Strings Record::*roles = nullptr;  // parallel to `list`
  Missing missing = Missing::kEmptyElement;
  bool required = false;  // every result must have it
};

template <class Record>
using Table = Items<Field<Record>>;

template <class Record>
constexpr Field<Record> textField(const char* element, char* Record::*text,
                                  Missing missing = Missing::kEmptyElement) {
  return {element, text, nullptr, nullptr, missing};
}

template <class Record>
constexpr Field<Record> listField(const char* element, Strings Record::*list,
                                  Missing missing = Missing::kEmptyElement) {
  return {element, nullptr, list, nullptr, missing};
}

template <class Record>
constexpr Field<Record> castField(const char* element, Strings Record::*names,
                                  Strings Record::*roles,
                                  Missing missing = Missing::kEmptyElement) {
  return {element, nullptr, names, roles, missing};
}

template <class Record>
constexpr Field<Record> required(Field<Record> field) {
  field.required = true;
  return field;
}

/// An element's first CDATA section; `none` if it has none. Text outside CDATA is ignored.
inline const char* firstClearOr(const XMLNode& element, const char* none) {
  return element.nClear() > 0 ? element.getClear(0).lpszValue : none;
}

inline const char* firstClear(const XMLNode& element) { return firstClearOr(element, nullptr); }

/// Appends one actor. Unless missing values count as empty, an actor without a name is skipped, and
/// an actor without a role throws std::logic_error.
inline void readActor(const XMLNode& actor, Missing missing, Strings& names, Strings& roles) {
  const char* none = missing == Missing::kOneElement ? "" : nullptr;
  const char* name = firstClearOr(actor.getChildNode("name"), none);
  if (name == nullptr) {
    return;
  }
  names.emplace_back(name);
  const char* role = firstClearOr(actor.getChildNode("role"), none);
  if (role == nullptr) {
    throw std::logic_error("basic_string::_S_construct NULL not valid");
  }
  roles.emplace_back(role);
}

/// Fills the record from the children of `element`, in the table's order; appends to lists. If two
/// lines fill the same text, the later one with a value counts.
template <class Record>
void readRecord(const XMLNode& element, Table<Record> table, Record& record) {
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      if (const char* value = firstClear(element.getChildNode(field.element))) {
        std::free(record.*field.text);
        record.*field.text = SafeStrdup(value);
      }
      continue;
    }
    element.forEachChild(field.element, [&](const XMLNode& entry) {
      if (field.roles != nullptr) {
        readActor(entry, field.missing, record.*field.list, record.*field.roles);
        return;
      }
      const char* value = firstClear(entry);
      if (value != nullptr && (*value != '\0' || field.missing != Missing::kOneElement)) {
        (record.*field.list).emplace_back(value);
      }
    });
  }
}

template <class Record>
void writeText(XMLNode& element, const Field<Record>& field, const Record& record,
               AddChild addChild) {
  const char* value = record.*field.text;
  if (value == nullptr && field.missing == Missing::kLeftOut) {
    return;
  }
  if (value == nullptr && field.missing == Missing::kEmptyText) {
    value = "";
  } else if (value != nullptr && *value == '\0' && field.missing == Missing::kNoText) {
    value = nullptr;
  }
  addChild(element, field.element, value);
}

template <class Record>
void writeList(XMLNode& element, const Field<Record>& field, const Record& record,
               AddChild addChild) {
  const Strings& list = record.*field.list;
  const bool inPairs = field.roles == nullptr || (record.*field.roles).size() == list.size();
  if (field.missing == Missing::kOneElement && (list.empty() || !inPairs)) {
    addChild(element, field.element, nullptr);
    return;
  }
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (field.roles == nullptr) {
      addChild(element, field.element, list[i].c_str());
      continue;
    }
    const Strings& roles = record.*field.roles;
    XMLNode actor = element.addChild(field.element);
    addChild(actor, "name", list[i].c_str());
    addChild(actor, "role", i < roles.size() ? roles[i].c_str() : nullptr);
  }
}

/// Adds the record's fields to `element`, in the table's order.
template <class Record>
void writeRecord(XMLNode& element, Table<Record> table, const Record& record,
                 AddChild addChild = addTextChild) {
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      writeText(element, field, record, addChild);
    } else {
      writeList(element, field, record, addChild);
    }
  }
}

/// Sets the text fields to null; lists stay as they are.
template <class Record>
void clearTexts(Table<Record> table, Record& record) {
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      record.*field.text = nullptr;
    }
  }
}

/// Releases the text fields; the pointers stay as they are.
template <class Record>
void freeTexts(Table<Record> table, const Record& record) {
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      std::free(record.*field.text);
    }
  }
}

}  // namespace libquilp
