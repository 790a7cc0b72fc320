#pragma once

#include <string>

#include "record/recording.h"

// A recording is given away: what looks like a key, a token or a password is not in it.

namespace quilp {

/// The text with the values of "NAME=VALUE" replaced where NAME is that of a key, as in an address,
/// and the user of an address.
std::string withoutKeys(const std::string& text);

/// Replaces keys in what was asked, in files and headers, and the same values wherever else they
/// are; those of the add-ons' settings, too.
void removeKeys(Recording& recording, std::string settings);

}  // namespace quilp
