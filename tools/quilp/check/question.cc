#include "check/question.h"

#include "movie/records.h"
#include "music/records.h"
#include "tv/records.h"

namespace quilp {
namespace {

/// What the library's own table of a document reads.
template <class Record, std::size_t N>
std::vector<Element> elementsOf(const libquilp::Field<Record> (&table)[N]) {
  std::vector<Element> elements;
  for (const libquilp::Field<Record>& field : table) {
    elements.push_back({field.element, field.text == nullptr, field.roles != nullptr});
  }
  return elements;
}

}  // namespace

Layout movieList() {
  return {"movielist", "movie", elementsOf(libquilp::kMovieFields), {"id", "title"}};
}

Layout movie() {
  return {"movie", nullptr, elementsOf(libquilp::kMovieInfoFields), {"title"}, true};
}

Layout showList() {
  return {"tvshowlist", "tvshow", elementsOf(libquilp::kShowFields), {"id", "title"}};
}

Layout show() { return {"tvshow", nullptr, elementsOf(libquilp::kShowInfoFields), {"title"}}; }

Layout episode() { return {"tvepisode", nullptr, elementsOf(libquilp::kEpisodeFields), {"title"}}; }

Layout albumList() { return {"albumlist", "album", elementsOf(libquilp::kAlbumFields), {"name"}}; }

Layout artistAlbumList() {
  return {"albumlist", "album", elementsOf(libquilp::kArtistAlbumFields), {"name"}};
}

Layout artwork() { return {"artistthumbnail", "url", {}, {}}; }

Layout song() {
  return {"KtvInfo",
          nullptr,
          {{"Title", false, false},
           {"TitleWordCount", false, false},
           {"Language", false, false},
           {"AudioTrack", false, false},
           {"Gain", false, false},
           {"Artist", false, false},
           {"Genre", false, false}},
          {"Title"},
          false,
          true};
}

}  // namespace quilp
