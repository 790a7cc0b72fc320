#pragma once

#include <json/value.h>

#include <string>
#include <utility>
#include <vector>

#include "lookup/run.h"
#include "text/utf8.h"

namespace libquilp {

/// The values of one element of a result.
struct ResultField {
  std::string element;
  Strings values{};
  Strings roles{};      // of a cast, parallel to `values`
  bool isList = false;  // also where there is one value
};

using Result = std::vector<ResultField>;

/// A result without a value is none.
void addResult(Result&& result, std::vector<Result>& results);

void addText(const char* element, const char* text, Result& result);
void addList(const char* element, const Strings& values, const Strings* roles, Result& result);

/// What a record holds, by its table; elements without a value are left out.
template <class Record>
void addResult(Table<Record> table, const Record& record, std::vector<Result>& results) {
  Result result;
  for (const Field<Record>& field : table) {
    if (field.text != nullptr) {
      addText(field.element, record.*field.text, result);
    } else {
      addList(field.element, record.*field.list,
              field.roles != nullptr ? &(record.*field.roles) : nullptr, result);
    }
  }
  addResult(std::move(result), results);
}

struct PlainAnswer : Answer {
  std::vector<Result> results;
};

/// Looks up by any request. Throws nothing but std::bad_alloc.
PlainAnswer look(const Request& request, const Values& values, const Context& context);

/// A list of objects with a member for each element.
Json::Value jsonOf(const std::vector<Result>& results);

}  // namespace libquilp
