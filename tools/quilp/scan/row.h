#pragma once

#include <json/value.h>

#include <string>
#include <vector>

#include "scan/candidate.h"
#include "scan/item.h"

namespace quilp {

/// What was found out about one item.
struct ScanRow {
  std::string file;
  MediaKind kind = MediaKind::kMovie;

  // As its name was read.
  std::string title;
  int year = 0;  // 0: unknown, here and below
  std::vector<int> seasons;
  std::vector<int> episodes;
  std::string episodeTitle;

  // What it was found to be; the match is empty for none.
  std::string match;
  int matchYear = 0;
  std::string id;
  std::string matchEpisode;  // the episode's title
  std::string airDate;
  int confidence = 0;
  bool sure = false;
  std::string reason;
  Candidates candidates;
  std::vector<std::string> setAside;  // identifiers that no title has, and where they stood

  bool failed = false;  // the lookup failed: another scan may find more
  std::string failure;  // why

  bool unknown() const { return match.empty() && id.empty(); }
};

Json::Value jsonOf(const ScanRow& row);

/// Reads what jsonOf wrote. Throws Json::Exception where it is something else.
ScanRow rowOf(const Json::Value& json);

/// "1", or "1-3": numbers on one line.
std::string numbersText(const std::vector<int>& numbers);

}  // namespace quilp
