#include "scan/finder.h"

#include <algorithm>

#include "scan/album_tags.h"
#include "scan/judge.h"
#include "scan/nfo_ids.h"

namespace quilp {
namespace {

using libquilp::Answer;
using libquilp::Name;
using libquilp::Reason;

constexpr int kKnown = 100;
constexpr int kNoEpisode = 25;   // points lost by a show without the episode
constexpr int kByAbsolute = 10;  // by an episode that is only counted through all seasons
constexpr int kHasEpisode = 5;   // points won by a show with the episode: as good as most years
constexpr int kSameEpisode = 8;  // points won by an episode of the same title
constexpr double kAlike = .8;
constexpr std::size_t kMostShows = 3;  // that are asked for the episode
constexpr int kNearlyAsGood = 15;
constexpr int kPlausible = 50;

bool isUnsettled(const Answer& answer) {
  return answer.reason != Reason::kOk && answer.reason != Reason::kNothingFound;
}

Wanted wantedOf(const Name& name) {
  Wanted wanted{{name.title}, name.year, name.kind == libquilp::NameKind::kEpisode};
  wanted.titles.insert(wanted.titles.end(), name.alternativeTitles.begin(),
                       name.alternativeTitles.end());
  return wanted;
}

/// As the reader of names reads it back.
std::string wordsOf(const std::string& title, int year) {
  return year != 0 ? title + " (" + std::to_string(year) + ')' : title;
}

std::string idIn(const Name& name) {
  for (const char* source : {"imdb", "tmdb"}) {
    for (const libquilp::NameIdentifier& identifier : name.identifiers) {
      if (identifier.source == source) {
        return identifier.source == "imdb" ? identifier.id
                                           : identifier.source + ':' + identifier.id;
      }
    }
  }
  return {};
}

void take(const Candidate& candidate, ScanRow& row) {
  row.match = (candidate.artist.empty() ? "" : candidate.artist + " - ") + candidate.title;
  row.matchYear = candidate.year;
  row.id = candidate.id;
  row.confidence = candidate.confidence;
  row.reason = candidate.reason;
}

void takeBest(ScanRow& row) {
  weighRivals(row.candidates);
  if (!row.candidates.empty()) {
    take(row.candidates.front(), row);
  } else if (!row.failed) {
    row.reason = "nothing of that title was found";
  }
}

/// An album of somebody else is not the one.
void judgeArtist(const std::string& artist, Candidates& albums) {
  constexpr double kSame = 0.7;
  for (Candidate& album : albums) {
    if (!artist.empty() && !album.artist.empty() && similarity(artist, album.artist) < kSame) {
      album.add(-60, "it is by another artist");
    }
  }
}

/// Whether it was found out that there is nothing. Add-ons end with 1 then.
bool isAbsent(const Answer& answer) {
  return answer.reason == Reason::kNothingFound || answer.reason == Reason::kUnknownSeason ||
         answer.reason == Reason::kUnknownEpisode ||
         (answer.reason == Reason::kExitStatus && answer.number == 1);
}

}  // namespace

ScanRow Finder::find(const MediaItem& item, const std::string& show) {
  ScanRow row;
  row.file = item.path;
  row.kind = item.kind;
  if (item.kind == MediaKind::kSong) {
    findSong(item, row);
  } else {
    row.title = item.name.title;
    row.year = item.name.year;
    row.seasons = item.name.seasons;
    row.episodes = item.name.episodes;
    row.episodeTitle = item.name.episodeTitle;
    if (item.kind == MediaKind::kAlbum) {
      findAlbum(item, row);
    } else {
      findTitle(item, show, row);
    }
  }
  row.sure = !row.unknown() && row.confidence >= sure_;
  return row;
}

void Finder::findTitle(const MediaItem& item, const std::string& show, ScanRow& row) {
  const bool known =
      !show.empty()
          ? takeKnown(show, "it is the show of other episodes in its folder", item, row)
          : takeKnown(overrides_.find(item.path), "it is in the list of overrides", item, row) ||
                takeKnown(idIn(item.name), "the name has the identifier", item, row) ||
                takeKnown(idFromNfo(item), "its NFO file has the identifier", item, row);
  if (!known && item.name.title.empty()) {
    row.reason = "the name has no title";
    return;
  }
  if (!known) {
    Searched searched = search(item);
    row.candidates = searched.candidates;
    note(searched.answer, row);
    if (item.kind == MediaKind::kEpisode && !takeAsMovie(item, row)) {
      findEpisode(item, row);
    }
    takeBest(row);
  } else if (item.kind == MediaKind::kEpisode) {
    row.candidates = {{row.id, row.match, row.matchYear, {}, 0, row.confidence, row.reason}};
    findEpisode(item, row);
    take(row.candidates.front(), row);
    row.candidates.clear();
  }
}

/// Whether there is a title of that identifier. One that cannot be looked up is believed.
bool Finder::takeKnown(const std::string& id, const char* reason, const MediaItem& item,
                       ScanRow& row) {
  if (id.empty()) {
    return false;
  }
  const Described described = describeTitle(item.kind, id);
  if (isAbsent(described.answer)) {
    row.setAside.push_back(id + ": " + reason + ", but there is no such title");
    return false;
  }
  note(described.answer, row);
  row.match = described.title.empty() ? row.title : described.title;
  row.matchYear = yearOf(described.date);
  row.id = id;
  row.confidence = kKnown;
  row.reason = reason;
  return true;
}

Searched Finder::search(const MediaItem& item) {
  const Wanted wanted = wantedOf(item.name);
  Searched all;
  for (const std::string& title : wanted.titles) {
    Searched searched = searchOnce(item.kind, wordsOf(title, wanted.year));
    for (Candidate& candidate : searched.candidates) {
      const auto same = [&candidate](const Candidate& known) { return known.id == candidate.id; };
      if (std::none_of(all.candidates.begin(), all.candidates.end(), same)) {
        all.candidates.push_back(std::move(candidate));
      }
    }
    if (!isUnsettled(all.answer)) {
      all.answer = searched.answer;
    }
    judge(wanted, all.candidates);
    if (!all.candidates.empty() && all.candidates.front().confidence >= sure_) {
      break;
    }
  }
  if (all.candidates.size() > static_cast<std::size_t>(count_)) {
    all.candidates.resize(static_cast<std::size_t>(count_));
  }
  return all;
}

/// The numbers of a film's name may look like an episode's, but not with a season.
bool Finder::takeAsMovie(const MediaItem& item, ScanRow& row) {
  const int best = row.candidates.empty() ? 0 : row.candidates.front().confidence;
  const bool isEpisode = !item.name.seasons.empty() && !item.name.episodes.empty();
  if (best >= kPlausible || item.name.year == 0 || isEpisode) {
    return false;
  }
  MediaItem movie = item;
  movie.kind = MediaKind::kMovie;
  Candidates candidates = search(movie).candidates;
  if (candidates.empty() || candidates.front().confidence < sure_) {
    return false;
  }
  row.kind = MediaKind::kMovie;
  row.seasons.clear();
  row.episodes.clear();
  row.episodeTitle.clear();
  row.candidates = std::move(candidates);
  return true;
}

/// Episodes of one show come one after another, and from several threads at a time.
Searched Finder::searchOnce(MediaKind kind, const std::string& words) {
  if (kind != MediaKind::kEpisode) {
    return searchTitles(kind, words, count_);
  }
  std::promise<Searched> promise;
  std::shared_future<Searched> future;
  bool isFirst = false;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    const auto [known, isNew] = shows_.try_emplace(words);
    if (isNew) {
      known->second = promise.get_future().share();
    }
    future = known->second;
    isFirst = isNew;
  }
  if (isFirst) {
    promise.set_value(searchTitles(kind, words, count_));
  }
  return future.get();
}

void Finder::findEpisode(const MediaItem& item, ScanRow& row) {
  const Name& name = item.name;
  const bool byAbsolute = name.episodes.empty() && !name.absoluteEpisodes.empty();
  const std::vector<int>& episodes = byAbsolute ? name.absoluteEpisodes : name.episodes;
  if (episodes.empty() || name.seasons.size() > 1) {
    row.reason += name.airDate.empty() ? "" : "; an episode is not looked up by its date";
    return;
  }
  const int season = name.seasons.empty() ? 1 : name.seasons.front();
  const int best = row.candidates.empty() ? 0 : row.candidates.front().confidence;
  Described found;
  int foundConfidence = -1;
  std::size_t asked = 0;
  for (Candidate& show : row.candidates) {
    if (best - show.confidence > kNearlyAsGood || asked++ == kMostShows) {
      break;
    }
    const Described described = describeEpisode(show.id, season, episodes.front());
    if (!described.found() || (described.title.empty() && described.id.empty())) {
      show.add(-kNoEpisode, "the show has no such episode");
      if (!isAbsent(described.answer)) {
        note(described.answer, row);
      }
      continue;
    }
    const bool isSame =
        !name.episodeTitle.empty() && similarity(name.episodeTitle, described.title) >= kAlike;
    show.add((isSame ? kSameEpisode : kHasEpisode) - (byAbsolute ? kByAbsolute : 0),
             isSame ? "the episode's title fits" : "the show has the episode");
    if (show.confidence > foundConfidence) {
      found = described;
      foundConfidence = show.confidence;
    }
  }
  row.matchEpisode = found.title;
  row.airDate = found.date;
}

void Finder::findSong(const MediaItem& item, ScanRow& row) {
  row.title = item.song.title;
  const Described described = describeSong(item.path);
  note(described.answer, row);
  std::string read;
  for (const std::string& artist : item.song.artists) {
    read += (read.empty() ? "" : ", ") + artist;
  }
  read += (read.empty() || row.title.empty() ? "" : " - ") + row.title;
  row.match = described.title.empty() ? read : described.title;
  const bool whole = !item.song.artists.empty() && !row.title.empty();
  row.confidence = row.match.empty() ? 0 : whole ? 90 : 50;
  row.reason = row.match.empty() ? "the name has no title"
               : whole           ? "the name has artist and title"
                                 : "the name has a title only";
}

/// Tags count more than the folder's name, which is often short for an album.
void Finder::findAlbum(const MediaItem& item, ScanRow& row) {
  const std::size_t dash = row.title.find(" - ");
  const std::string folder = dash == std::string::npos ? row.title : row.title.substr(dash + 3);
  AlbumTags wanted = albumTagsOf(item.files);
  if (wanted.artist.empty() && dash != std::string::npos) {
    wanted.artist = row.title.substr(0, dash);
  }
  if (!wanted.album.empty()) {
    row.title = (wanted.artist.empty() ? "" : wanted.artist + " - ") + wanted.album;
  }
  wanted.album = wanted.album.empty() ? folder : wanted.album;
  row.year = wanted.year != 0 ? wanted.year : row.year;
  if (wanted.album.empty()) {
    row.reason = "neither tags nor the folder's name have a title";
    return;
  }
  Searched searched = searchAlbums(wanted.album, wanted.artist, count_);
  note(searched.answer, row);
  judge({{wanted.album, folder}, row.year}, searched.candidates);
  judgeArtist(wanted.artist, searched.candidates);
  row.candidates = std::move(searched.candidates);
  takeBest(row);
}

void Finder::note(const Answer& answer, ScanRow& row) {
  if (isUnsettled(answer)) {
    row.failed = true;
    row.failure = sentence(answer);
    row.reason = row.failure;
  }
  const std::lock_guard<std::mutex> lock(mutex_);
  if (!isUnsettled(answer_)) {
    answer_ = answer;
  }
}

Answer Finder::whyNothing() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return answer_;
}

}  // namespace quilp
