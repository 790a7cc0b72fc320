#include "movie/records.h"

#include <cstddef>

#include "plugin/records.h"

// The record layouts are part of the binary interface.
static_assert(sizeof(velMovie_) == 5 * sizeof(char*), "velMovie_ has changed");
static_assert(sizeof(velMovieInfo_) == 9 * sizeof(char*) + 5 * sizeof(std::vector<std::string>),
              "velMovieInfo_ has changed");
static_assert(offsetof(velMovieInfo_, mpaa) == 7 * sizeof(char*) &&
                  offsetof(velMovieInfo_, country) == 9 * sizeof(char*) &&
                  offsetof(velMovieInfo_, outline) == 21 * sizeof(char*),
              "velMovieInfo_ has changed");

void velFreeMovies(velMovie_* movies, int count) {
  libquilp::freeRecords<velMovie_>(libquilp::kMovieFields, movies, count);
}

void velFreeMovieInfo(velMovieInfo_* info) {
  if (info != nullptr) {
    libquilp::freeTexts<velMovieInfo_>(libquilp::kMovieInfoFields, *info);
  }
}
