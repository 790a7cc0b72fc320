#include "lookup/requests.h"

const std::vector<const libquilp::Request*>& libquilp::allRequests() {
  static const std::vector<const Request*> kAll = {&kMovieSearch,  &kMovieDetails,   &kShowSearch,
                                                   &kShowDetails,  &kEpisodeDetails, &kAlbumSearch,
                                                   &kArtistAlbums, &kArtistPictures, &kSong};
  return kAll;
}
