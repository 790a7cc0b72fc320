#pragma once

#include <string>
#include <vector>

#include "scan/record.h"

namespace quilp {

struct EpisodeRecord {
  int season = 0;
  int number = 0;
  Record record{};
};

// NFO files, as media centres read them.

std::string movieNfo(const std::string& id, const Record& movie);
std::string showNfo(const std::string& id, const Record& show);

/// A root for each episode of the file.
std::string episodesNfo(const std::string& showTitle, const std::vector<EpisodeRecord>& episodes);

}  // namespace quilp
