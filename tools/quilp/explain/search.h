#pragma once

#include <string>

#include "explain/explanation.h"

namespace quilp {

// Each makes the search that the program's command of that kind makes.

Explanation explainMovies(const std::string& keyword, int count);

/// An empty language stands for the add-on's own.
Explanation explainShows(const std::string& keyword, int count, const std::string& language);

Explanation explainAlbums(const std::string& album, const std::string& artist, int count);

}  // namespace quilp
