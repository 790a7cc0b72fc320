#include "lookups.h"

#include <new>
#include <stdexcept>

#include "libquilp.h"
#include "support.h"

namespace test {
namespace {

using std::string;

string named(const char* name, const char* value) {
  return value != nullptr ? string(name) + ':' + value + '|' : "";
}
string named(const char* name, int value) {
  return value != -1 ? named(name, std::to_string(value).c_str()) : "";
}
string named(const char* name, const std::vector<string>& values) {
  string all;
  for (const string& value : values) {
    all += (&value != values.data() ? ";" : "") + value;
  }
  return values.empty() ? "" : named(name, all.c_str());
}

/// "name:value|…" of the parts that are set.
template <class Value, class... More>
string text(const char* name, const Value& value, const More&... more) {
  if constexpr (sizeof...(more) == 0) {
    return named(name, value);
  } else {
    return named(name, value) + text(more...);
  }
}

string described(const velMovie_& m) {
  return text("id", m.id, "title", m.title, "year", m.year, "url", m.url, "outline", m.outline);
}
string described(const velMovieInfo_& m) {
  return text("id", m.id, "title", m.title, "year", m.year, "rating", m.rating, "mpaa", m.mpaa,
              "company", m.company, "poster", m.poster, "plot", m.plot, "outline", m.outline,
              "country", m.country, "genre", m.genre, "director", m.director, "actor", m.actor,
              "role", m.role);
}
string described(const velTVShow& s) {
  return text("id", s.id, "title", s.title, "aired", s.first_air_date, "poster", s.poster,
              "outline", s.outline);
}
string described(const velTVShowInfo& s) {
  return text("id", s.id, "title", s.title, "first", s.first_air_date, "last", s.last_air_date,
              "rating", s.rating, "content", s.content_rating, "duration", s.duration, "poster",
              s.poster, "banner", s.banner, "outline", s.outline, "creator", s.creators, "network",
              s.networks, "genre", s.genres, "actor", s.actor_names, "role", s.actor_roles);
}
string described(const velTVEpisode& e) {
  return text("id", e.id, "title", e.title, "aired", e.air_date, "season", e.season_number,
              "episode", e.episode_number, "rating", e.rating, "thumbnail", e.thumbnail, "outline",
              e.outline, "director", e.directors, "genre", e.genres, "actor", e.actor_names, "role",
              e.actor_roles);
}
string described(const velAlbum_& a) {
  return text("name", a.name, "artist", a.artist, "date", a.releasedate, "image", a.image);
}
string described(const velThumb_& t) { return text("url", t.url); }

using test::described;

template <class Call>
int resultOf(Call call) {
  try {
    return call();
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::out_of_range&) {
    return kOutOfRange;
  } catch (const std::logic_error&) {
    return kLogicError;
  } catch (...) {
    return kNeverRight;
  }
}

/// An abandoned listing has stored records all the same: up to the first without an image.
int storedIn(const velAlbum_* albums, int n) {
  for (int i = 0; n < 1; ++i) {
    n = albums[i].image == nullptr ? i + 1 : n;
  }
  return n;
}
template <class Record>
int storedIn(const Record*, int n) {
  return n;
}

using Run = std::function<void(const Asked&, Answer&, bool)>;

template <class Record, class Call>
Run searching(void (*release)(Record*, int), Call call) {
  return [=](const Asked& asked, Answer& answer, bool describes) {
    Record* records = nullptr;
    answer.result = resultOf([&] { return call(asked, &records, &answer.error); });
    answer.stored = records != nullptr;
    const int n = answer.stored ? storedIn(records, answer.result) : 0;
    for (int i = 0; describes && i < n; ++i) {
      answer.text += (i > 0 ? "\n" : "") + described(records[i]);
    }
    release(records, n);
  };
}

bool hasRoleWithoutActor(const velMovieInfo_& m) { return m.role.size() > m.actor.size(); }
bool hasRoleWithoutActor(const KTV_ExtraData_t&) { return false; }
template <class Record>
bool hasRoleWithoutActor(const Record& r) {
  return r.actor_roles.size() > r.actor_names.size();
}

template <class Record, class Call>
Run filling(void (*release)(Record*), Call call) {
  return [=](const Asked& asked, Answer& answer, bool describes) {
    Record record = Record();
    answer.result = resultOf([&] { return call(asked, &record, nullptr); });
    answer.result = hasRoleWithoutActor(record) ? kNeverRight : answer.result;
    if (describes) {
      answer.text = described(record);
    }
    release(&record);
  };
}

template <class Call>
Run printing(Call call) {
  return [=](const Asked& asked, Answer& answer, bool) {
    answer.result = resultOf([&] { return call(asked, nullptr, nullptr); });
  };
}

void keep(KTV_ExtraData_t*) {}

#define CALL(call) \
  [](const Asked& a, [[maybe_unused]] auto out, [[maybe_unused]] auto error) { return call; }

}  // namespace

string described(const KTV_ExtraData_t& song) {
  const char* title = song.title.empty() ? nullptr : song.title.c_str();
  string all = text("title", title, "language", song.language, "track", song.audioTrack, "gain",
                    song.gain, "reserved", song.reserved1, "reserved", song.reserved2);
  for (const ArtistData_t& artist : song.artists) {
    const int none = artist.nationality == 0 ? 1 : 0;
    all += text(artist.name.c_str(), artist.gender, "from", artist.nationality - none);
    all += artist.patterns.empty() ? "" : "patterns";
  }
  for (const TitleSearchPattern_t& pattern : song.titlePatterns) {
    all += text("words", pattern.wordCount) + (pattern.kind == 1 ? "" : "kind");
    all += pattern.text == song.title ? "" : text("of", pattern.text.c_str());
  }
  return all + text("genre", song.genres);
}

// Where the registry cannot be read, a lookup takes the built-in route: that route's results are
// failures, too.
const std::vector<Lookup>& lookups() {
  static const Asked movie = {"paper.lighthouse.S01E02"};  // no blanks: it can stay as it is
  static const Asked show = {"signal.row.S01E02"};
  static const Asked id = {"tt9000001"};
  static const Asked showId = {"tt8000001"};
  static const Asked album = {"salt & rope", 2, "tin harbour"};
  static const Asked artist = {"tin harbour"};
  static const Asked song = {
      "/songs/Ann Lee, the first singer[F]&Bo[M]_A title that is long enough[E][R].mpg"};
  // clang-format off
  static const std::vector<Lookup> table = {
    {"velSearchMovie", "Movie", movie, {0, 1}, Kind::kFinds,
     searching(velFreeMovies, CALL(velSearchMovie(a.what, a.count, out, error)))},
    {"velPrintSearchMovie", "Movie", movie, {0, 1, 2}, Kind::kPrints,
     printing(CALL(velPrintSearchMovie(a.what, a.count)))},
    {"velGetMovieByID", "Movie", id, {-1, 1, 2}, Kind::kFills,
     filling(velFreeMovieInfo, CALL(velGetMovieByID(a.what, out)))},
    {"velPrintMovieByID", "Movie", id, {1}, Kind::kPrints,
     printing(CALL(velPrintMovieByID(a.what)))},
    {"imdbBasicGetMovies", "", {"everything", 5}, {0, 1}, Kind::kFinds,
     searching(velFreeMovies, CALL(imdbBasicGetMovies(a.what, a.count, out)))},
    {"imdbGetMovies", "", {"lighthouse"}, {0}, Kind::kFinds,
     searching(velFreeMovies, CALL(imdbGetMovies(a.what, a.count, out)))},
    {"imdbGetMovieInfo", "", id, {-1, 1}, Kind::kFills,
     filling(velFreeMovieInfo, CALL(imdbGetMovieInfo(a.what, out)))},
    {"velSearchTVShows", "TV", show, {0, 1}, Kind::kFinds,
     searching(velFreeTVShows, CALL(velSearchTVShows(a.what, a.count, a.lang, out, error)))},
    {"velPrintSearchTVShows", "TV", show, {0, 1, 2}, Kind::kPrints,
     printing(CALL(velPrintSearchTVShows(a.what, a.count, a.lang)))},
    {"velGetTVShowByID", "TV", showId, {1, 2}, Kind::kFills,
     filling(velFreeTVShowInfo, CALL(velGetTVShowByID(a.what, a.lang, out)))},
    {"velPrintTVShowByID", "TV", showId, {1, 2}, Kind::kPrints,
     printing(CALL(velPrintTVShowByID(a.what, a.lang)))},
    {"velGetTVEpisode", "TV", showId, {-1, 1, 2}, Kind::kFills,
     filling(velFreeTVEpisode, CALL(velGetTVEpisode(a.what, a.season, a.episode, a.lang, out)))},
    {"velPrintTVEpisode", "TV", showId, {-1, 1, 2}, Kind::kPrints,
     printing(CALL(velPrintTVEpisode(a.what, a.season, a.episode, a.lang)))},
    {"velSearchAlbum", "Music", album, {0, 1}, Kind::kFinds,
     searching(velFreeAlbums, CALL(velSearchAlbum(a.what, a.artist, a.count, out)))},
    {"velPrintSearchAlbum", "Music", album, {1}, Kind::kPrints,
     printing(CALL(velPrintSearchAlbum(a.what, a.artist, a.count)))},
    {"velGetAlbumByArtist", "Music", artist, {0, 1}, Kind::kFinds,
     searching(velFreeAlbums, CALL(velGetAlbumByArtist(a.what, a.count, out)))},
    {"velPrintGetAlbumByArtist", "Music", artist, {1}, Kind::kPrints,
     printing(CALL(velPrintGetAlbumByArtist(a.what, a.count)))},
    {"velGetArtistThumbnail", "Music", artist, {0, 2}, Kind::kFinds,
     searching(velFreeThumbs, CALL(velGetArtistThumbnail(a.what, a.count, out)))},
    {"velPrintGetArtistThumbnail", "Music", artist, {1}, Kind::kPrints,
     printing(CALL(velPrintGetArtistThumbnail(a.what, a.count)))},
    {"velGetKTVInfo", "KTV", song, {1}, Kind::kFills,
     filling(keep, CALL(velGetKTVInfo(a.what, out)))},
    {"BasicGetKTVInfo", "", song, {1}, Kind::kFills,
     filling(keep, CALL(BasicGetKTVInfo(a.what, out)))},
  };
  // clang-format on
  return table;
}

const Lookup& lookup(const string& function) {
  for (const Lookup& each : lookups()) {
    if (each.function == function) {
      return each;
    }
  }
  throw std::invalid_argument(function);
}

Answer ask(const Lookup& lookup, const Asked& asked) {
  Answer answer;
  const auto call = [&] { lookup.run(asked, answer, true); };
  if (lookup.kind == Kind::kPrints) {
    answer.text = standardOutputOf(call);
  } else {
    call();
  }
  return answer;
}

Answer ask(const string& function, const Asked& asked) { return ask(lookup(function), asked); }

}  // namespace test
