#pragma once

#include "libquilp.h"
#include "lookup/run.h"

// Every lookup that an add-on can answer.

namespace libquilp {

extern const ListRequest<velMovie_> kMovieSearch;
extern const RecordRequest<velMovieInfo_> kMovieDetails;
extern const ListRequest<velTVShow> kShowSearch;
extern const RecordRequest<velTVShowInfo> kShowDetails;
extern const RecordRequest<velTVEpisode> kEpisodeDetails;
extern const ListRequest<velAlbum_> kAlbumSearch;
extern const ListRequest<velAlbum_> kArtistAlbums;
extern const ListRequest<velThumb_> kArtistPictures;
extern const RecordRequest<KTV_ExtraData_t> kSong;

/// Whether a lookup filled any field of a record beyond the values of the request.
template <class Record>
bool tellsAnything(const RecordRequest<Record>& request, const Record& record) {
  for (const Field<Record>& field : request.printed) {
    const std::string element = field.element;
    if (element != "id" && element != "season_number" && element != "episode_number" &&
        isFilled(field, record)) {
      return true;
    }
  }
  return false;
}

}  // namespace libquilp
