#pragma once

#include "libquilp.h"

namespace libquilp {

/// The built-in search behind velSearchTVShows, for a percent-encoded keyword.
int imdbGetTVShows(const char* keyword, int count, velTVShow** shows);

/// Gives `n` results the poster address and outline of their title pages, all fetched at a time.
void GetTVOutLineAndImage(velTVShow** shows, int n);

/// The body of each of its threads: takes a MovieWorkRecord, returns null. It does not end the
/// thread itself: it may be run by the caller's.
void* imdbGetTVInfo(void* record);

}  // namespace libquilp
