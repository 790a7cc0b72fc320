#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace libquilp {

struct Name;
struct Song;

/// One thing that a name tells, under the key that programs know it by.
struct KeyValues {
  enum class Form {
    kText,    // a list only where there are several
    kNumber,  // the same
    kTexts,   // always a list
    kPairs,   // a key and its value, and so on
  };

  std::string_view key;
  Form form = Form::kText;
  std::vector<std::string> values;  // one or more

  bool operator==(const KeyValues& other) const {
    return key == other.key && values == other.values;
  }
};

/// What a name tells, in the order for printing; the kind is the first.
std::vector<KeyValues> fieldsOf(const Name& name);
std::vector<KeyValues> fieldsOf(const Song& song);

/// What is of use to a person only.
std::vector<KeyValues> detailsOf(const Name& name);

/// Whether two names tell the same, wherever it stands in them.
bool tellSame(const Name& a, const Name& b);

}  // namespace libquilp
