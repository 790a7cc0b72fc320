#include "title.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "bytes.h"

namespace quilp::catalogue {
namespace {

constexpr std::array kTypes = {
    TitleType{"movie", Kind::kMovie},     TitleType{"tvMovie", Kind::kMovie},
    TitleType{"short", Kind::kMovie},     TitleType{"video", Kind::kMovie},
    TitleType{"tvSpecial", Kind::kMovie}, TitleType{"tvShort", Kind::kMovie},
    TitleType{"tvSeries", Kind::kShow},   TitleType{"tvMiniSeries", Kind::kShow},
    TitleType{"tvPilot", Kind::kShow},
};

void packPeople(const std::vector<Person>& people, bool roles, Packer& to) {
  to.number(people.size());
  for (const Person& person : people) {
    to.number(person.id);
    if (roles) {
      to.text(person.role);
    }
  }
}

/// No more than there are bytes left: a damaged count must not take memory.
std::size_t countIn(Unpacker& from) {
  const std::uint64_t count = from.number();
  if (count > from.rest().size()) {
    throw Damaged("a list ends early");
  }
  return static_cast<std::size_t>(count);
}

std::vector<Person> unpackPeople(bool roles, Unpacker& from) {
  std::vector<Person> people(countIn(from));
  for (Person& person : people) {
    person.id = from.number32();
    if (roles) {
      person.role = from.text();
    }
  }
  return people;
}

}  // namespace

const TitleType* findType(std::string_view name) {
  const auto* type = std::find_if(kTypes.begin(), kTypes.end(),
                                  [&](const TitleType& each) { return each.name == name; });
  return type == kTypes.end() ? nullptr : type;
}

const TitleType* typeAt(unsigned index) { return &kTypes[index < kTypes.size() ? index : 0]; }

unsigned indexOf(const TitleType& type) { return static_cast<unsigned>(&type - kTypes.data()); }

const std::string& Title::in(std::string_view language) const {
  const auto found = std::find_if(local.begin(), local.end(), [&](const LocalTitle& each) {
    return each.language == language;
  });
  return found == local.end() ? title : found->title;
}

void pack(const Title& title, std::string& bytes) {
  Packer to(bytes);
  to.number(title.id);
  to.byte(title.type * 2 + (title.adult ? 1 : 0));
  to.number(title.year);
  to.number(title.endYear);
  to.number(title.minutes);
  to.number(title.rating);
  to.number(title.votes);
  to.text(title.title);
  to.text(title.originalTitle);
  to.number(title.genres.size());
  for (const std::string& genre : title.genres) {
    to.text(genre);
  }
  to.number(title.local.size());
  for (const LocalTitle& each : title.local) {
    to.text(each.language);
    to.text(each.title);
  }
  packPeople(title.directors, false, to);
  packPeople(title.creators, false, to);
  packPeople(title.cast, true, to);
}

Title unpackTitle(Unpacker& from) {
  Title title;
  title.id = from.number32();
  const unsigned type = from.byte();
  title.type = type / 2;
  title.adult = type % 2 != 0;
  title.year = from.number32();
  title.endYear = from.number32();
  title.minutes = from.number32();
  title.rating = from.number32();
  title.votes = from.number32();
  title.title = from.text();
  title.originalTitle = from.text();
  title.genres.resize(countIn(from));
  for (std::string& genre : title.genres) {
    genre = from.text();
  }
  title.local.resize(countIn(from));
  for (LocalTitle& each : title.local) {
    each.language = from.text();
    each.title = from.text();
  }
  title.directors = unpackPeople(false, from);
  title.creators = unpackPeople(false, from);
  title.cast = unpackPeople(true, from);
  return title;
}

void pack(const Episode& episode, std::string& bytes) {
  Packer to(bytes);
  to.number(episode.number);
  to.number(episode.id);
  to.number(episode.year);
  to.number(episode.minutes);
  to.number(episode.rating);
  to.number(episode.votes);
  to.text(episode.title);
}

Episode unpackEpisode(Unpacker& from) {
  Episode episode;
  episode.number = from.number32();
  episode.id = from.number32();
  episode.year = from.number32();
  episode.minutes = from.number32();
  episode.rating = from.number32();
  episode.votes = from.number32();
  episode.title = from.text();
  return episode;
}

std::string idText(std::uint32_t id) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "tt%07u", id);
  return text.data();
}

std::uint32_t idOf(std::string_view text) {
  for (const std::string_view prefix : {"imdb:", "tt"}) {
    if (text.substr(0, prefix.size()) == prefix) {
      text.remove_prefix(prefix.size());
    }
  }
  if (text.empty() || text.size() > 9 ||
      text.find_first_not_of("0123456789") != std::string_view::npos) {
    return 0;
  }
  std::uint32_t id = 0;
  for (const char c : text) {
    id = id * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return id;
}

}  // namespace quilp::catalogue
