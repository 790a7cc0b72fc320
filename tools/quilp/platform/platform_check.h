#pragma once

#include <string>

namespace quilp {

/// Tells on standard error, in one line, what the platform lacks for a lookup of a kind of media
/// ("movie", "tv", "music", "karaoke") that found nothing; says nothing where it lacks nothing, nor
/// for what is no lookup.
void reportPlatform(const std::string& what);

}  // namespace quilp
