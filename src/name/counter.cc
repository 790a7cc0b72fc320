#include "name/counter.h"

namespace libquilp {
namespace {

using Unit = Counter::Unit;

bool startsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

struct UnitWord {
  std::string_view word;
  Unit unit;
};

constexpr UnitWord kUnits[] = {
    {"季", Unit::kSeason},  {"期", Unit::kSeason},  {"시즌", Unit::kSeason}, {"기", Unit::kSeason},
    {"話", Unit::kEpisode}, {"话", Unit::kEpisode}, {"集", Unit::kEpisode},  {"回", Unit::kEpisode},
    {"화", Unit::kEpisode}, {"회", Unit::kEpisode}, {"部", Unit::kPart},     {"卷", Unit::kPart},
    {"巻", Unit::kPart},
};

constexpr std::string_view kNumerals[] = {"〇", "一", "二", "三", "四", "五",
                                          "六", "七", "八", "九", "十"};

/// A number in digits or in Chinese numerals up to ninety-nine. Returns its bytes, 0 for none.
std::size_t numberAt(std::string_view text, int& number) {
  std::size_t size = 0;
  number = 0;
  while (size < text.size() && size < 4 && text[size] >= '0' && text[size] <= '9') {
    number = number * 10 + (text[size++] - '0');
  }
  if (size != 0) {
    return size;
  }
  int ones = 0;
  for (;;) {
    int digit = -1;
    for (int i = 0; i <= 10; ++i) {
      if (startsWith(text.substr(size), kNumerals[i])) {
        digit = i;
      }
    }
    if (digit < 0 || size >= 9) {
      break;
    }
    size += 3;
    if (digit == 10) {
      number = (ones == 0 ? 1 : ones) * 10;
      ones = 0;
    } else {
      ones = ones * 10 + digit;
    }
  }
  number += ones;
  return size;
}

}  // namespace

Counter counterAt(std::string_view name, std::size_t at) {
  constexpr std::string_view kOrdinal = "第";
  constexpr std::string_view kAll = "全";
  const std::string_view text = name.substr(at);
  if (text.empty() ||
      (static_cast<unsigned char>(text[0]) < 0x80 && (text[0] < '0' || text[0] > '9'))) {
    return {};
  }
  Counter counter;
  const bool ordinal = startsWith(text, kOrdinal);
  const bool total = startsWith(text, kAll);
  const bool bare = !ordinal && !total;
  if (bare &&
      (text[0] < '0' || text[0] > '9' || (at > 0 && name[at - 1] >= '0' && name[at - 1] <= '9'))) {
    return {};
  }
  std::size_t size = bare ? 0 : kOrdinal.size();
  if (ordinal && size < text.size() && text[size] == ' ') {
    ++size;
  }
  const std::size_t first = numberAt(text.substr(size), counter.first);
  if (first == 0) {
    return {};
  }
  size += first;
  counter.last = counter.first;
  for (const std::string_view dash : {"-", "~", "～"}) {
    if (startsWith(text.substr(size), dash)) {
      const std::size_t last = numberAt(text.substr(size + dash.size()), counter.last);
      if (last == 0) {
        return {};
      }
      size += dash.size() + last;
      break;
    }
  }
  if (ordinal && size < text.size() && text[size] == ' ') {
    ++size;
  }
  for (const UnitWord& unit : kUnits) {
    if (startsWith(text.substr(size), unit.word)) {
      counter.size = size + unit.word.size();
      counter.unit = total ? Unit::kTotal : unit.unit;
      return bare && unit.unit == Unit::kPart ? Counter() : counter;
    }
  }
  return {};
}

}  // namespace libquilp
