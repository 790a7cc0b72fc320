#pragma once

#include <string>

namespace quilp {

/// Tells on standard error, in one line, what the platform lacks for a lookup of a kind of media
/// ("movie", "tv", "music", "karaoke") that found nothing, or for the list of add-ons (any other
/// text); says nothing where it lacks nothing.
void reportPlatform(const std::string& what);

}  // namespace quilp
