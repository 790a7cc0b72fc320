#pragma once

#include <string>
#include <utility>
#include <vector>

#include "scan/item.h"

namespace quilp {

/// The details of a movie, a show or an episode, as the library prints them.
class Record {
 public:
  struct Actor {
    std::string name;
    std::string role;
  };

  /// An empty value is none.
  void add(const std::string& element, const std::string& value);
  void addActor(Actor actor) { actors_.push_back(std::move(actor)); }

  /// The first value of an element; empty for none.
  std::string text(const std::string& element) const;
  std::vector<std::string> list(const std::string& element) const;
  const std::vector<Actor>& actors() const { return actors_; }
  bool empty() const { return values_.empty(); }

 private:
  std::vector<std::pair<std::string, std::string>> values_;
  std::vector<Actor> actors_;
};

/// Empty where nothing is known.
Record recordOfMovie(const std::string& id);
Record recordOfShow(const std::string& id);
Record recordOfEpisode(const std::string& show, int season, int episode);

}  // namespace quilp
