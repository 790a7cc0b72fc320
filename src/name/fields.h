#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace libquilp {

struct Song;

/// One thing that a name tells, under the key that programs know it by.
struct Field {
  enum class Form { kText, kNumber, kTexts };  // kTexts: a list even when there is only one

  std::string_view key;
  Form form = Form::kText;
  std::vector<std::string> values;  // one or more
};

/// What a song's name tells, in the order for printing.
std::vector<Field> fieldsOf(const Song& song);

}  // namespace libquilp
