#pragma once

#include <string>
#include <vector>

#include "record/recording.h"

// This program links its own askAddOn(), askCurl(), askCurls(), placeOf() and markerSought(), which
// keep what lookups are told, or answer from a recording and start nothing.

namespace quilp {

/// From now on, all lookups are recorded.
void beginRecording(const std::vector<std::string>& words);

/// What was recorded, without keys.
Recording takeRecording();

/// From now on, all lookups are answered from the recording.
void beginReplay(Recording recording);

/// The first question that the recording had no answer to; empty for none.
std::string unanswered();

/// From now on, lookups start no add-on and no curl. May be called in a signal handler.
void startNothing();

}  // namespace quilp
