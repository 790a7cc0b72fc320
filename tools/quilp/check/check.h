#pragma once

#include <string>

namespace quilp {

/// What to ask an add-on for; what is empty was not given.
struct Wishes {
  std::string program, type, keyword, language, artist, album, file, season, episode;
  double timeout = 30;
  bool json = false;
};

/// Asks, judges and prints what came of it. True when nothing failed, nothing had to be left out
/// and all could be printed.
bool check(Wishes wishes);

}  // namespace quilp
