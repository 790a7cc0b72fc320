#pragma once

#include <string>
#include <utility>
#include <vector>

#include "kit/records.h"
#include "kit/titles.h"

// The answers of Wikidata and Wikipedia as records. What is missing, null or of another type is
// empty. Each throws std::runtime_error for a text that is no JSON.

namespace quilp::wikidata {

/// Of a search: identifiers of entities, best first.
kit::Texts readSearch(const std::string& answer);

/// Of wbgetentities: hits, in the order of their identifiers. Names are in the language, else in
/// its base, in all languages ("mul"), in English, or in any.
std::vector<kit::Title> readHits(const std::string& answer, const kit::Texts& ids,
                                 const std::string& language);

/// A value that is an entity itself, of which the name is yet to be asked.
struct Named {
  kit::Texts kit::Title::*list = nullptr;  // null for an actor
  std::string entity{};
  std::string role{};  // the character's name, or its entity
};

/// An article of Wikipedia.
struct Article {
  std::string language{};
  std::string title{};
};

/// What an entity tells.
struct Facts {
  kit::Title title{};
  std::vector<Named> named{};
  std::vector<Article> articles{};  // the best language first
  std::string posterFile{};         // of Wikimedia Commons
  std::string bannerFile{};
};

/// Of wbgetentities: all of one entity.
Facts readFacts(const std::string& answer, const std::string& id, const std::string& language);

/// The entities of which facts need the names.
kit::Texts entitiesOf(const Facts& facts);

/// Of wbgetentities about those: puts the names into the facts' title.
void readNames(const std::string& answer, const std::string& language, Facts& facts);

/// Of wbgetentities: the part with that number, a season of a show or an episode of a season; empty
/// for none.
std::string readPart(const std::string& answer, const std::string& id, int number);

/// Of Wikipedia's page/summary: a text that ends with its credit.
std::string readSummary(const std::string& answer);

/// The words without what the search would take for commands.
std::string searchWords(const std::string& words);

bool isEntity(const std::string& id);

}  // namespace quilp::wikidata
