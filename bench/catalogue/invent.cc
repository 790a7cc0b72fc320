#include "invent.h"

#include <algorithm>
#include <array>

namespace invent {
namespace {

constexpr std::uint32_t kWords = 1U << 18;
constexpr std::array kOnsets = {"b", "br", "d",  "dr", "f",  "g", "gr", "h", "j",  "k",
                                "l", "m",  "n",  "p",  "r",  "s", "sh", "t", "th", "v",
                                "w", "st", "tr", "c",  "cl", "z", "qu", "fl"};
constexpr std::array kVowels = {"a", "e", "i", "o", "u", "ea", "ai", "ou", "y"};
constexpr std::array kCodas = {"", "n", "r", "l", "s", "m", "t", "nd", "rk", "ll", "", "x"};
constexpr std::array kSmallWords = {"of", "of the", "in", "in the", "and", "to", "from", "without"};
constexpr std::array kCyrillic = {"ба", "ро", "ми", "на", "лет", "ска", "вод", "ны", "тор", "зем"};
constexpr std::array kHebrew = {"של", "בי", "רו", "מים", "ות", "לי", "שמ", "נה", "גל", "דר"};
constexpr std::array kHan = {"山", "水", "光", "海", "城", "夜", "星", "花", "王", "路", "风",
                             "心", "天", "火", "月", "雨", "云", "木", "石", "金", "国", "家"};
constexpr std::array kKana = {"か", "さ", "た", "な", "の", "ま", "り", "ラ", "キ", "ト", "ン"};
constexpr std::array kAccents = {"é", "ö", "ñ", "å", "ç", "ú"};
constexpr std::array kNumerals = {" II", " 2", " III", " 3", " IV", " 4"};

std::string titleWord(Random& random) {
  std::string text = capital(word(random.zipf(kWords)));
  if (random.once(40)) {
    text.insert(1, one(kAccents, random));
  }
  return text;
}

template <class Parts>
std::string joined(const Parts& parts, Random& random, bool blanks) {
  std::string text;
  const std::uint32_t count = 3 + random.below(6);
  for (std::uint32_t i = 0; i < count; ++i) {
    text += one(parts, random);
    text += blanks && i + 1 < count && random.once(3) ? " " : "";
  }
  return text;
}

}  // namespace

Random::Random(std::uint64_t seed, std::uint64_t kind, std::uint64_t number)
    : state_(seed * 0xd1342543de82ef95U + kind) {
  state_ = next() + number;
  state_ = next();
}

std::uint64_t Random::next() {
  std::uint64_t z = state_ += 0x9e3779b97f4a7c15U;
  z = (z ^ z >> 30) * 0xbf58476d1ce4e5b9U;
  z = (z ^ z >> 27) * 0x94d049bb133111ebU;
  return z ^ z >> 31;
}

std::uint32_t Random::zipf(std::uint32_t limit) {
  std::uint32_t bits = 0;
  while (bits < 31 && limit >> (bits + 1) != 0) {
    ++bits;
  }
  const std::uint32_t first = 1U << below(bits + 1);
  const std::uint32_t place = below(first);
  return std::min(first + place, limit) - 1;
}

std::string word(std::uint32_t n) {
  Random random(0, 1, n);  // a language does not change with the seed
  std::string text;
  const std::uint32_t syllables = n < 300 ? 1 + random.below(2) : 2 + random.below(2 + n / 100000);
  for (std::uint32_t i = 0; i < syllables; ++i) {
    text += one(kOnsets, random);
    text += one(kVowels, random);
  }
  return text + one(kCodas, random);
}

std::string capital(std::string word) {
  word[0] = static_cast<char>(word[0] & ~0x20);
  return word;
}

std::string title(Random& random) {
  std::string text;
  const std::uint32_t start = random.below(12);
  text = start < 3 ? "The " : start == 3 ? "A " : "";
  text += titleWord(random);
  const std::uint32_t more = random.below(8);
  const std::uint32_t words = more < 5 ? more / 2 : 3;
  for (std::uint32_t i = 0; i < words; ++i) {
    if (random.once(4)) {
      text += std::string(" ") + one(kSmallWords, random);
    }
    text += ' ' + titleWord(random);
  }
  switch (random.below(24)) {
    case 0:
    case 1:
      text += one(kNumerals, random);
      break;
    case 2:
      text += " & " + titleWord(random);
      break;
    case 3:
      text += ": " + titleWord(random);
      text += " of " + titleWord(random);
      break;
    case 4:
      text += "'s " + titleWord(random);
      break;
    case 5:
      text += random.once(2) ? "!" : "?";
      break;
    default:
      break;
  }
  return text;
}

std::string foreignTitle(Random& random, const std::string& region) {
  return region == "RU"   ? joined(kCyrillic, random, true)
         : region == "IL" ? joined(kHebrew, random, true)
         : region == "CN" ? joined(kHan, random, false)
                          : joined(kKana, random, false);
}

std::string person(Random& random) {
  std::string name = capital(word(random.zipf(3000)));
  if (random.once(12)) {
    name += std::string(" ") + static_cast<char>('A' + random.below(26)) + '.';
  }
  return name + ' ' + capital(word(random.zipf(kWords)));
}

}  // namespace invent
