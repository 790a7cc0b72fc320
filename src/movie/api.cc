#include <new>
#include <string>

#include "libquilp.h"
#include "movie/records.h"
#include "plugin/result_document.h"
#include "plugin/shell_call.h"

int velSearchMovie(const char* keyword, int count, velMovie_** movies, int* error) try {
  using namespace libquilp;
  ShellCall shell("Movie");
  if (!shell.found()) {
    return imdbBasicGetMovies(ProcessKeyword(keyword, 1).c_str(), count, movies);
  }
  const int status =
      shell.run({"searchmovie", "-t", ProcessKeyword(keyword, 0).c_str(), "-n", Decimal(count)});
  if (status != 0) {
    *error = status;
    return 0;
  }
  const XMLNode list = shell.document("movielist");
  return list ? readRecords(list, "movie", kMovieFields, &velFreeMovies, movies) : 0;
} catch (const std::bad_alloc&) {
  return 0;
}

int velPrintSearchMovie(const char* keyword, int count) try {
  using namespace libquilp;
  velMovie_* movies = nullptr;
  int error = 0;
  const int n = velSearchMovie(keyword, count, &movies, &error);
  const RecordArray<velMovie_> owned(&velFreeMovies, movies, n);
  if (n == 0) {
    return error;
  }
  ResultDocument document("movielist");
  for (int i = 0; i < n; ++i) {
    XMLNode entry = document.addEntry("movie", i);
    writeRecord(entry, kMovieFields, movies[i]);
  }
  document.print();
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}

int velGetMovieByID(const char* id, velMovieInfo_* info) try {
  using namespace libquilp;
  clearTexts(kMovieInfoFields, *info);
  ShellCall shell("Movie");
  if (!shell.found()) {
    return imdbGetMovieInfo(id, info);
  }
  const int status = shell.run({"getmovieinfobyid", "-i", withoutPrefix(id)});
  if (status != 0) {
    return status;
  }
  const XMLNode movie = shell.document("movie");
  if (!movie) {
    return 1;
  }
  readRecord(movie, kMovieInfoFields, *info);
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}

int velPrintMovieByID(const char* id) try {
  using namespace libquilp;
  Owned<velMovieInfo_, velFreeMovieInfo> info;
  if (velGetMovieByID(id, &info) != 0) {
    return 1;
  }
  ResultDocument document("movie");
  writeRecord<velMovieInfo_>(document.root(), kPrintedMovieInfoFields, info);
  document.print();
  return 0;
} catch (const std::bad_alloc&) {
  return 1;
}
