#pragma once

#include <string_view>

#include "libquilp.h"
#include "plugin/record_table.h"

namespace libquilp {

/// Gives `n` results the poster address and outline of their title pages, all fetched at a time.
void TestGetOutLineAndImage(velMovie_** movies, int n);

/// The body of each of its threads: takes a MovieWorkRecord, returns null.
void* imdbGetBasicMovieInfo(void* record);

/// Fills records from a page of the alternate search.
void readAlternatePage(std::string_view page, int count, RecordArray<velMovie_>& movies);

}  // namespace libquilp
