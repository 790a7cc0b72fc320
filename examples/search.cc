#include <libquilp.h>

#include <cstdio>

int main() {
  velMovie_* movies = nullptr;
  int error = 0;  // an add-on's exit status
  const int n = velSearchMovie("The.Paper.Lighthouse.2011.1080p.BluRay", 5, &movies, &error);
  for (int i = 0; i < n; ++i) {
    const velMovie_& movie = movies[i];  // a null field is not known
    std::printf("%s %s\n", movie.id ? movie.id : "-", movie.title ? movie.title : "?");
  }
  velFreeMovies(movies, n);
  return n > 0 ? 0 : 1;
}
