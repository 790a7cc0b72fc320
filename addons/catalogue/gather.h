#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "data_sets.h"
#include "import.h"
#include "layout.h"
#include "people.h"
#include "rows.h"
#include "sorter.h"
#include "title.h"

namespace quilp::catalogue {

/// The first pass of an import: puts the rows of all data sets together, title by title. All of
/// them are in the order of their identifiers as text, so one pass over all of them does it.
class Gatherer {
 public:
  Gatherer(const ImportOptions& options, const DataSets& sets, const OnProgress& progress,
           Imported& result);
  ~Gatherer();
  Gatherer(const Gatherer&) = delete;
  Gatherer& operator=(const Gatherer&) = delete;

  /// Throws OutOfOrder.
  void gather();

  /// The more votes, the earlier. Key: votes and identifier. Value: all names, then the title.
  Sorter& titles() { return titles_; }
  /// Key: show, season, number, identifier. Value: the episode.
  Sorter& episodes() { return episodes_; }
  /// Key: identifier. Value: as in the table "ident", without its first byte. Titles are added
  /// later.
  Sorter& idents() { return idents_; }
  People& people() { return people_; }

 private:
  class Joined;

  void takeTitle(std::uint32_t id, const TitleType& type);
  void takeEpisode(std::uint32_t id);
  void takeNames(std::string_view id);
  void takePrincipals(std::string_view id);
  void addName(std::string_view title, Source source);
  void addPerson(std::string_view text, std::string_view characters, std::vector<Person>& to);
  void tell();
  void close();

  const ImportOptions& options_;
  const DataSets& sets_;
  const OnProgress& progress_;
  Imported& result_;
  Sorter titles_;
  Sorter episodes_;
  Sorter idents_;
  People people_;
  std::unique_ptr<Joined> basics_, akas_, ratings_, crew_, principals_, parents_;
  Title title_;                     // the one at hand
  std::vector<std::string> names_;  // its normalised names, each after its source
  std::string key_, value_;
};

}  // namespace quilp::catalogue
