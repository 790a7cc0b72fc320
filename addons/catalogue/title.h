#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quilp::catalogue {

enum class Kind : std::uint8_t { kMovie, kShow };

/// What the type column says. Episodes are no titles of their own; games are left out.
struct TitleType {
  std::string_view name;
  Kind kind;
};
const TitleType* findType(std::string_view name);
const TitleType* typeAt(unsigned index);
unsigned indexOf(const TitleType& type);

struct Person {
  std::uint32_t id = 0;  // in the file: the number of a name; while importing: of "nm0000001"
  std::string role{};    // of a cast member
};

struct LocalTitle {
  std::string language;  // "fr"
  std::string title;
};

/// A movie or a show.
struct Title {
  std::uint32_t id = 0;  // of "tt0000001"
  unsigned type = 0;     // index of a TitleType
  bool adult = false;
  unsigned year = 0;  // 0: unknown, as below
  unsigned endYear = 0;
  unsigned minutes = 0;
  unsigned rating = 0;  // tenths
  std::uint32_t votes = 0;
  std::string title{};
  std::string originalTitle{};  // empty where it is the title
  std::vector<std::string> genres{};
  std::vector<LocalTitle> local{};
  std::vector<Person> directors{};
  std::vector<Person> creators{};
  std::vector<Person> cast{};

  Kind kind() const { return typeAt(type)->kind; }

  /// The title in a language, or else the title.
  const std::string& in(std::string_view language) const;
};

struct Episode {
  std::uint32_t id = 0;
  unsigned number = 0;
  unsigned year = 0;
  unsigned minutes = 0;
  unsigned rating = 0;
  std::uint32_t votes = 0;
  std::string title{};
};

void pack(const Title& title, std::string& to);
void pack(const Episode& episode, std::string& to);

/// Reads as many bytes as one takes. Throws Damaged.
class Unpacker;
Title unpackTitle(Unpacker& from);
Episode unpackEpisode(Unpacker& from);

/// "tt0133093", and back: 0 for anything else. Digits alone and "imdb:tt0133093" are taken as well.
std::string idText(std::uint32_t id);
std::uint32_t idOf(std::string_view text);

}  // namespace quilp::catalogue
