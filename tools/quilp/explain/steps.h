#pragma once

#include <initializer_list>
#include <string>

#include "explain/explanation.h"
#include "platform/registry_view.h"
#include "plugin/record_table.h"
#include "plugin/shell_call.h"

// Steps that the explained searches share.

namespace quilp {

/// Runs the add-on as the library does; there is a reason unless it left a document with the root.
void runAddOn(const libquilp::RegistrySection& section, libquilp::ShellCall& shell,
              std::initializer_list<const char*> arguments, const char* root,
              Explanation& explanation);

/// Blanks are no value: who is given a document finds nothing there.
bool isFilled(const char* value);

/// An array of the library's.
template <class Record, void (*Free)(Record*, int)>
struct Rows {
  Rows() = default;
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;
  ~Rows() { Free(records, count); }

  Record* records = nullptr;
  int count = 0;
};

/// Counts rows and their fields. Returns whether any is filled.
template <class Record, std::size_t N>
bool countFields(const libquilp::Field<Record> (&table)[N], const Record* records, int count,
                 Explanation& explanation) {
  explanation.rows = count;
  bool any = false;
  for (const libquilp::Field<Record>& field : table) {
    int filled = 0;
    for (int i = 0; i < count; ++i) {
      filled += isFilled(records[i].*field.text) ? 1 : 0;
    }
    explanation.fields.push_back({field.element, filled});
    any = any || filled > 0;
  }
  return any;
}

/// Why an add-on's document of its kind gave nothing.
Reason reasonOfEntries(int rows);

}  // namespace quilp
