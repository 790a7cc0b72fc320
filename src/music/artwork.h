#pragma once

#include <json/value.h>

#include <optional>
#include <string>

#include "libquilp.h"
#include "plugin/observer.h"
#include "plugin/records.h"

namespace libquilp {

/// Which pictures of an album are accepted.
enum class CoverKind { kFront, kFrontOrDisc };

/// Fetches the artwork of an album and returns the address of its cover: empty if the service has
/// none, no value if its document cannot be parsed. Fetches nothing for a null identifier.
std::optional<std::string> fetchCover(const char* id, CoverKind kind, const Context& context);

/// The address of a cover in an album's artwork document; empty when there is none.
std::string coverOf(const Json::Value& document, const char* id, CoverKind kind);

/// The backgrounds in an artist's artwork document, at most `count`.
RecordArray<velThumb_> picturesOf(const Json::Value& document, int count);

/// The built-in lookup of the backgrounds that the service has for an artist.
Found<velThumb_> fetchPictures(const char* artist, int count, const Context& context);

}  // namespace libquilp
