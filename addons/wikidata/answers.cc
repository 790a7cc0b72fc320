#include "answers.h"

#include <algorithm>
#include <string_view>

#include "ascii.h"
#include "kit/json.h"
#include "kit/values.h"
#include "kit/wikimedia.h"

namespace quilp::wikidata {
namespace {

using kit::Json;
using kit::Texts;
using kit::Title;

constexpr std::size_t kMostNamed = 50;  // the service tells no more at a time

// Properties whose values are entities with names.
struct List {
  const char* property;
  Texts Title::*list;
};
constexpr List kLists[] = {
    {"P57", &Title::directors}, {"P170", &Title::creators},  {"P272", &Title::companies},
    {"P449", &Title::networks}, {"P495", &Title::countries}, {"P136", &Title::genres},
};

std::string lowered(std::string text) {
  for (char& c : text) {
    c = static_cast<char>(libquilp::toLower(static_cast<unsigned char>(c)));
  }
  return text;
}

/// A label or description.
std::string inLanguage(const Json& texts, const std::string& language) {
  for (const std::string& each :
       {lowered(language), kit::baseOf(language), std::string("mul"), std::string("en")}) {
    std::string text = texts[each]["value"].text();
    if (!text.empty()) {
      return text;
    }
  }
  for (const Json& each : texts.members()) {
    std::string text = each["value"].text();
    if (!text.empty()) {
      return text;
    }
  }
  return "";
}

/// The entity, or the one that it was merged into. One that is missing has no values.
Json entityIn(const Json& root, const std::string& id) {
  const Json entities = root["entities"];
  for (const Json& each : entities.members()) {
    if (each["redirects"]["from"].text() == id) {
      return each;
    }
  }
  return entities[id];
}

/// "+1999-03-31T00:00:00Z", which may be precise to a year or month only.
std::string timeOf(const Json& value) {
  constexpr int kYear = 9;
  constexpr int kMonth = 10;
  const std::string time = value["time"].text();
  const double precision = value["precision"].number();
  if (time.empty() || time[0] != '+' || precision < kYear) {
    return "";
  }
  return kit::dateOf(time.substr(1, precision == kYear ? 4 : precision == kMonth ? 7 : 10));
}

/// The first of the best ranked dates.
std::string dateOf(const Json& entity, const char* property) {
  std::string first;
  for (const Json& value : kit::bestValuesOf(entity, property)) {
    const std::string date = timeOf(value);
    if (!date.empty() && (first.empty() || date < first)) {
      first = date;
    }
  }
  return first;
}

std::string durationOf(const Json& entity) {
  for (const Json& value : kit::bestValuesOf(entity, "P2047")) {
    const std::string unit = value["unit"].text();
    const double amount = value["amount"].number();
    const auto isUnit = [&unit](std::string_view name) {
      return unit.size() > name.size() && unit.substr(unit.size() - name.size()) == name;
    };
    if (isUnit("/Q7727") || isUnit("/Q11574") || isUnit("/Q25235")) {  // minutes, seconds, hours
      return kit::minutesOf(isUnit("/Q7727")    ? amount
                            : isUnit("/Q11574") ? amount / 60
                                                : amount * 60);
    }
  }
  return "";
}

std::string textOf(const Json& entity, const char* property) {
  for (const Json& value : kit::bestValuesOf(entity, property)) {
    const std::string text = value["text"].text();  // of a text in some language
    std::string string = text.empty() ? value.text() : text;
    if (!string.empty()) {
      return string;
    }
  }
  return "";
}

std::string yearFirst(const Json& entity) {
  for (const char* const property : {"P580", "P577"}) {
    std::string date = dateOf(entity, property);
    if (!date.empty()) {
      return date;
    }
  }
  return "";
}

/// What hits and details have in common.
Title commonOf(const Json& entity, const std::string& id, const std::string& language) {
  Title title;
  title.id = isEntity(entity["id"].text()) ? entity["id"].text() : id;
  title.originalTitle = textOf(entity, "P1476");
  title.title = inLanguage(entity["labels"], language);
  title.title = title.title.empty() ? title.originalTitle : title.title;
  title.date = yearFirst(entity);
  title.imdb = kit::imdbOf(textOf(entity, "P345"));
  return title;
}

std::string idOf(const Json& value) {
  const std::string id = value["id"].text();
  return isEntity(id) ? id : "";
}

Texts roleOf(const Json& claim) {
  Texts roles;
  for (const Json& qualifier : claim["qualifiers"]["P453"].list()) {
    roles.push_back(idOf(qualifier["datavalue"]["value"]));
  }
  for (const Json& qualifier : claim["qualifiers"]["P4633"].list()) {
    roles.push_back(qualifier["datavalue"]["value"].text());
  }
  roles.erase(std::remove(roles.begin(), roles.end(), ""), roles.end());
  return roles;
}

void addNamed(const Json& entity, Facts& facts) {
  for (const List& each : kLists) {
    for (const Json& value : kit::valuesOf(entity, each.property)) {
      facts.named.push_back({each.list, idOf(value), ""});
    }
  }
  for (const Json& claim : kit::claimsOf(entity, "P161")) {
    const Texts roles = roleOf(claim);
    facts.named.push_back(
        {nullptr, idOf(claim["mainsnak"]["datavalue"]["value"]), roles.empty() ? "" : roles[0]});
  }
}

std::vector<Article> articlesOf(const Json& entity, const std::string& language) {
  std::vector<Article> articles;
  const std::string base = kit::baseOf(language);
  const std::string own = base == "nb" ? "no" : base;
  for (const std::string& each : {own, std::string("en")}) {
    const std::string title = entity["sitelinks"][each + "wiki"]["title"].text();
    if (!title.empty() && (articles.empty() || own != "en")) {
      articles.push_back({each, title});
    }
  }
  return articles;
}

}  // namespace

bool isEntity(const std::string& id) {
  return !id.empty() && id[0] == 'Q' && kit::isNumber(id.substr(1));
}

Texts readSearch(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  Texts ids = json.root()["query"]["search"].texts("title");
  ids.erase(std::remove_if(ids.begin(), ids.end(), [](const auto& id) { return !isEntity(id); }),
            ids.end());
  return ids;
}

std::vector<Title> readHits(const std::string& answer, const Texts& ids,
                            const std::string& language) {
  const kit::JsonAnswer json(answer);
  std::vector<Title> titles;
  for (const std::string& id : ids) {
    const Json entity = entityIn(json.root(), id);
    Title title = commonOf(entity, id, language);
    title.outline = inLanguage(entity["descriptions"], language);
    for (const Json& alias : entity["aliases"][kit::baseOf(language)].list()) {
      title.alternativeTitles.push_back(alias["value"].text());
    }
    titles.push_back(std::move(title));
  }
  return titles;
}

Facts readFacts(const std::string& answer, const std::string& id, const std::string& language) {
  const kit::JsonAnswer json(answer);
  const Json entity = entityIn(json.root(), id);
  Facts facts;
  facts.title = commonOf(entity, id, language);
  facts.title.outline = inLanguage(entity["descriptions"], language);
  facts.title.lastDate = dateOf(entity, "P582");
  facts.title.duration = durationOf(entity);
  facts.posterFile = textOf(entity, "P3383");
  facts.bannerFile = textOf(entity, "P154");
  facts.articles = articlesOf(entity, language);
  addNamed(entity, facts);
  return facts;
}

Texts entitiesOf(const Facts& facts) {
  Texts ids;
  const auto add = [&ids](const std::string& id) {
    if (isEntity(id) && ids.size() < kMostNamed &&
        std::find(ids.begin(), ids.end(), id) == ids.end()) {
      ids.push_back(id);
    }
  };
  for (const Named& named : facts.named) {
    add(named.entity);
    add(named.role);
  }
  return ids;
}

void readNames(const std::string& answer, const std::string& language, Facts& facts) {
  const kit::JsonAnswer json(answer);
  const auto nameOf = [&](const std::string& id) {
    return inLanguage(entityIn(json.root(), id)["labels"], language);
  };
  for (const Named& named : facts.named) {
    const std::string name = nameOf(named.entity);
    if (name.empty()) {
      continue;
    }
    if (named.list != nullptr) {
      (facts.title.*named.list).push_back(name);
    } else {
      facts.title.cast.push_back({name, isEntity(named.role) ? nameOf(named.role) : named.role});
    }
  }
}

std::string readPart(const std::string& answer, const std::string& id, int number) {
  const kit::JsonAnswer json(answer);
  for (const Json& claim : kit::claimsOf(entityIn(json.root(), id), "P527")) {
    for (const Json& qualifier : claim["qualifiers"]["P1545"].list()) {
      if (qualifier["datavalue"]["value"].text() == std::to_string(number)) {
        return idOf(claim["mainsnak"]["datavalue"]["value"]);
      }
    }
  }
  return "";
}

std::string readSummary(const std::string& answer) {
  const kit::JsonAnswer json(answer);
  const Json root = json.root();
  const std::string text = root["extract"].text();
  if (text.empty() || root["type"].text() == "disambiguation") {
    return "";
  }
  const std::string page = kit::addressOf(root["content_urls"]["desktop"]["page"].text());
  return text + " (Wikipedia" + (page.empty() ? "" : ", " + page) + ", CC BY-SA 4.0)";
}

std::string searchWords(const std::string& words) {
  std::string plain;
  for (const char c : words) {
    const bool isWord =
        std::string_view(" \"-:!~|*?\\/()[]{}<>=&#+\t\r\n").find(c) == std::string_view::npos;
    if (isWord) {
      plain += c;
    } else if (!plain.empty() && plain.back() != ' ') {
      plain += ' ';
    }
  }
  plain.erase(plain.find_last_not_of(' ') + 1);
  return plain;
}

}  // namespace quilp::wikidata
