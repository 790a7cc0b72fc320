#pragma once

#include "libquilp.h"
#include "plugin/record_table.h"

namespace libquilp {

/// Both a list document's order and the printed one.
inline constexpr Field<velMovie_> kMovieFields[] = {
    textField("url", &velMovie_::url),
    required(textField("id", &velMovie_::id)),
    required(textField("title", &velMovie_::title)),
    textField("year", &velMovie_::year),
    textField("outline", &velMovie_::outline, Missing::kLeftOut),
};

/// An add-on's document: its order decides what is filled when an actor without a role ends it.
inline constexpr Field<velMovieInfo_> kMovieInfoFields[] = {
    required(textField("title", &velMovieInfo_::title)),
    textField("year", &velMovieInfo_::year),
    textField("rating", &velMovieInfo_::rating),
    textField("id", &velMovieInfo_::id),
    listField("director", &velMovieInfo_::director),
    textField("company", &velMovieInfo_::company),
    listField("country", &velMovieInfo_::country),
    textField("mpaa", &velMovieInfo_::mpaa),
    listField("genre", &velMovieInfo_::genre),
    castField("actor", &velMovieInfo_::actor, &velMovieInfo_::role),
    textField("outline", &velMovieInfo_::outline),
    textField("plot", &velMovieInfo_::plot),
    textField("poster", &velMovieInfo_::poster),
};

/// The printed document: no countries.
inline constexpr Field<velMovieInfo_> kPrintedMovieInfoFields[] = {
    textField("title", &velMovieInfo_::title),
    textField("year", &velMovieInfo_::year),
    textField("rating", &velMovieInfo_::rating),
    textField("id", &velMovieInfo_::id),
    listField("director", &velMovieInfo_::director),
    textField("company", &velMovieInfo_::company),
    textField("mpaa", &velMovieInfo_::mpaa),
    listField("genre", &velMovieInfo_::genre),
    castField("actor", &velMovieInfo_::actor, &velMovieInfo_::role),
    textField("outline", &velMovieInfo_::outline),
    textField("plot", &velMovieInfo_::plot),
    textField("poster", &velMovieInfo_::poster),
};

}  // namespace libquilp
