#include "merge.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <utility>

#include "ascii.h"
#include "catalogue/normalise.h"

namespace quilp::chain {
namespace {

constexpr double kRankOffset = 10;  // two sources that agree outweigh the first place at one
constexpr int kYearGap = 1;         // sources differ by one year

/// Results that are the same.
struct Group {
  std::vector<Answer> members;    // one of each source
  std::set<std::string> names{};  // normalised
  std::string artist{};
  std::string imdb{};
  int year = 0;
  double score = 0;
};

/// The first four digits of a date.
int yearOf(const Elements& elements) {
  for (const char* name : {"year", "first_air_date", "releasedate"}) {
    const int year =
        static_cast<int>(std::strtol(valueOf(elements, name).substr(0, 4).c_str(), nullptr, 10));
    if (year > 0) {
      return year;
    }
  }
  return 0;
}

std::set<std::string> namesOf(const Elements& elements) {
  std::set<std::string> names;
  for (const Element& element : elements) {
    if (element.name == "title" || element.name == "original_title" ||
        element.name == "alternative_title" || element.name == "name") {
      names.insert(catalogue::normalise(element.text));
    }
  }
  names.erase("");
  return names;
}

/// A result, or the value of one that has no elements: the address of a picture.
Group groupOf(const std::string& source, const Element& result) {
  Group group;
  group.members.push_back({source, {result}});
  if (result.elements.empty()) {
    group.names = {result.text};
    return group;
  }
  group.names = namesOf(result.elements);
  group.artist = catalogue::normalise(valueOf(result.elements, "artist"));
  group.imdb = imdbOf(result.elements);
  group.year = yearOf(result.elements);
  return group;
}

bool isAlbum(const Group& group) { return group.members[0].elements[0].name == "album"; }

bool isSame(const Group& one, const Group& other) {
  if (!one.imdb.empty() && !other.imdb.empty()) {
    return one.imdb == other.imdb;
  }
  const bool sharesName = std::any_of(one.names.begin(), one.names.end(), [&](const auto& name) {
    return other.names.count(name) != 0;
  });
  if (!sharesName || one.members[0].elements[0].elements.empty()) {
    return sharesName;
  }
  if (isAlbum(one)) {  // of which there are editions
    return one.artist == other.artist || one.artist.empty() || other.artist.empty();
  }
  return one.year != 0 && other.year != 0 && std::abs(one.year - other.year) <= kYearGap;
}

bool hasSource(const Group& group, const std::string& source) {
  return std::any_of(group.members.begin(), group.members.end(),
                     [&](const Answer& member) { return member.source == source; });
}

void add(Group& group, Group other) {
  group.members.push_back(std::move(other.members[0]));
  group.names.merge(other.names);
  group.artist = group.artist.empty() ? other.artist : group.artist;
  group.imdb = group.imdb.empty() ? other.imdb : group.imdb;
  group.year = group.year == 0 ? other.year : group.year;
  group.score += other.score;
}

/// The best of the groups for a result: the year may be the same, or differ by one.
Group* findSame(std::vector<Group>& groups, const Group& wanted) {
  Group* found = nullptr;
  for (Group& group : groups) {
    if (hasSource(group, wanted.members[0].source) || !isSame(group, wanted)) {
      continue;
    }
    const bool isExact =
        group.year == wanted.year || (!group.imdb.empty() && group.imdb == wanted.imdb);
    if (isExact) {
      return &group;
    }
    found = found == nullptr ? &group : found;
  }
  return found;
}

bool isEmpty(const Element& element) { return element.text.empty() && element.elements.empty(); }

bool hasElement(const Element& element, const std::string& name) {
  return std::any_of(element.elements.begin(), element.elements.end(),
                     [&](const Element& each) { return each.name == name; });
}

/// Gives elements the names of sources in their ids, and removes those that say nothing.
Elements ofSource(const Answer& answer) {
  Elements elements;
  for (Element element : answer.elements) {
    if (isEmpty(element)) {
      continue;
    }
    if (element.name == "id") {
      element.text.insert(0, answer.source + ':');
    }
    if (element.name == "actor" && !hasElement(element, "role")) {
      element.elements.push_back({"role"});  // without one the library's caller gets an exception
    }
    elements.push_back(std::move(element));
  }
  return elements;
}

}  // namespace

std::string imdbOf(const std::string& id) {
  const std::string number = id.substr(id.compare(0, 5, "imdb:") == 0 ? 5 : 0);
  const bool isOne = number.size() > 2 && number.compare(0, 2, "tt") == 0 &&
                     number.find_first_not_of("0123456789", 2) == std::string::npos;
  return isOne ? number : "";
}

std::string imdbOf(const Elements& elements) {
  const std::string imdb = imdbOf(valueOf(elements, "imdb"));
  return imdb.empty() ? imdbOf(valueOf(elements, "id")) : imdb;
}

Elements mergeDetails(const std::vector<Answer>& answers) {
  Elements merged;
  for (const Answer& answer : answers) {
    std::set<std::string> known;
    for (const Element& element : merged) {
      known.insert(element.name);
    }
    for (Element& element : ofSource(answer)) {
      if (known.count(element.name) == 0) {
        merged.push_back(std::move(element));
      }
    }
  }
  return merged;
}

Elements mergeLists(const std::vector<Answer>& answers, const std::string& entry,
                    std::size_t most) {
  std::vector<Group> groups;
  for (const Answer& answer : answers) {
    double rank = 0;
    for (const Element& result : answer.elements) {
      const bool isWhole = entry == "url" ? !result.text.empty() : !result.elements.empty();
      if (result.name != entry || !isWhole) {
        continue;
      }
      Group single = groupOf(answer.source, result);
      single.score = 1 / (kRankOffset + ++rank);
      Group* const same = findSame(groups, single);
      if (same != nullptr) {
        add(*same, std::move(single));
      } else {
        groups.push_back(std::move(single));
      }
    }
  }
  std::stable_sort(groups.begin(), groups.end(),
                   [](const Group& one, const Group& other) { return one.score > other.score; });
  Elements merged;
  for (const Group& group : groups) {
    if (merged.size() == most) {
      break;
    }
    Element result = group.members[0].elements[0];
    std::vector<Answer> details;
    for (const Answer& member : group.members) {
      details.push_back({member.source, member.elements[0].elements});
    }
    result.elements = mergeDetails(details);
    merged.push_back(std::move(result));
  }
  return merged;
}

}  // namespace quilp::chain
