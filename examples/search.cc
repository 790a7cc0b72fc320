#include <libquilp.h>

#include <cstdio>

int main(int argc, char** argv) {
  const char* keyword = argc > 1 ? argv[1] : "The.Paper.Lighthouse.2011.1080p.BluRay";
  velMovie_* movies = nullptr;
  int error = 0;  // an add-on's exit status
  const int n = velSearchMovie(keyword, 5, &movies, &error);
  int hits = 0;
  for (int i = 0; i < n; ++i) {
    const velMovie_& movie = movies[i];
    if (movie.title == nullptr || *movie.title == '\0') {
      continue;  // the built-in search says "no results" by one empty record
    }
    ++hits;
    std::printf("%s %s\n", movie.id != nullptr ? movie.id : "-", movie.title);
  }
  velFreeMovies(movies, n);
  return hits > 0 ? 0 : 1;
}
