#include "records.h"

#include "layout.h"
#include "normalise.h"

namespace quilp::catalogue {
namespace {

void add(Elements& to, const char* name, std::string text) {
  if (!text.empty()) {
    to.push_back({name, std::move(text)});
  }
}

std::string yearText(unsigned year) { return year == 0 ? "" : std::to_string(year); }

/// 78 gives "7.8".
std::string ratingText(unsigned tenths) {
  return tenths == 0 ? "" : std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10);
}

std::string minutesText(unsigned minutes) {
  return minutes == 0 ? "" : std::to_string(minutes) + " min";
}

/// All people of a title are read at once.
void prefetchPeople(Store& store, const Title& title) {
  Tables::Keys rows;
  for (const auto* people : {&title.directors, &title.creators, &title.cast}) {
    for (const Person& person : *people) {
      rows.push_back(person.id / kPeopleARow);
    }
  }
  store.tables().prefetch("person", rows);
}

void addPeople(Store& store, const char* name, const std::vector<Person>& people, Elements& to) {
  for (const Person& person : people) {
    add(to, name, store.person(person.id));
  }
}

void addCast(Store& store, const Title& title, Elements& to) {
  for (const Person& person : title.cast) {
    std::string name = store.person(person.id);
    if (!name.empty()) {
      to.push_back({"actor", "", {{"name", std::move(name)}, {"role", person.role}}});
    }
  }
}

/// What tells a title from others like it.
void addMatch(const Title& title, std::string_view language, std::string_view name, Elements& to) {
  const std::string& shown = title.in(language);
  add(to, "original_title", title.originalTitle);
  if (shown != title.title) {
    add(to, "alternative_title", title.title);
  }
  if (name != normalise(shown) && name != normalise(title.title) &&
      name != normalise(title.originalTitle)) {
    add(to, "alternative_title", std::string(name));
  }
  add(to, "votes", title.votes == 0 ? "" : std::to_string(title.votes));
}

/// The page of a title, for people.
std::string page(std::uint32_t id) { return "https://www.imdb.com/title/" + idText(id) + '/'; }

}  // namespace

Elements movieHit(const Title& title, std::string_view language, std::string_view name) {
  Elements elements;
  add(elements, "id", idText(title.id));
  add(elements, "title", title.in(language));
  add(elements, "url", page(title.id));
  add(elements, "year", yearText(title.year));
  addMatch(title, language, name, elements);
  return elements;
}

Elements showHit(const Title& title, std::string_view language, std::string_view name) {
  Elements elements;
  add(elements, "id", idText(title.id));
  add(elements, "title", title.in(language));
  add(elements, "first_air_date", yearText(title.year));
  addMatch(title, language, name, elements);
  return elements;
}

Elements movie(Store& store, const Title& title, std::string_view language) {
  prefetchPeople(store, title);
  Elements elements;
  add(elements, "title", title.in(language));
  add(elements, "year", yearText(title.year));
  add(elements, "rating", ratingText(title.rating));
  add(elements, "id", idText(title.id));
  addPeople(store, "director", title.directors, elements);
  add(elements, "mpaa", title.adult ? "Adult" : "");
  for (const std::string& genre : title.genres) {
    add(elements, "genre", genre);
  }
  addCast(store, title, elements);
  return elements;
}

Elements show(Store& store, const Title& title, std::string_view language) {
  prefetchPeople(store, title);
  Elements elements;
  add(elements, "title", title.in(language));
  add(elements, "id", idText(title.id));
  add(elements, "first_air_date", yearText(title.year));
  add(elements, "last_air_date", yearText(title.endYear));
  add(elements, "rating", ratingText(title.rating));
  addCast(store, title, elements);
  for (const std::string& genre : title.genres) {
    add(elements, "genres", genre);
  }
  add(elements, "duration", minutesText(title.minutes));
  add(elements, "content_rating", title.adult ? "Adult" : "");
  addPeople(store, "creator", title.creators, elements);
  return elements;
}

Elements episode(const Title& show, const Episode& episode) {
  Elements elements;
  add(elements, "title", episode.title);
  add(elements, "id", idText(episode.id));
  add(elements, "air_date", yearText(episode.year));
  for (const std::string& genre : show.genres) {
    add(elements, "genre", genre);
  }
  add(elements, "rating", ratingText(episode.rating));
  return elements;
}

}  // namespace quilp::catalogue
