// Looks up a movie within two seconds, and says why where there is none: lookup WORDS
#include <iostream>
#include <quilp.hpp>

int main(int argc, char** argv) {
  if (argc != 2) {
    return 2;
  }
  quilp::Request request(QUILP_MOVIE_SEARCH);
  request.set(QUILP_KEYWORD, argv[1]).timeout(std::chrono::seconds(2));
  const quilp::Answer movies = request.run();
  for (const quilp::Result movie : movies) {
    std::cout << movie["title"].value_or("?") << " (" << movie["year"].value_or("?") << ")\n";
  }
  if (!movies) {
    std::cerr << movies.sentence() << '\n';
  }
  return movies ? 0 : 1;
}
