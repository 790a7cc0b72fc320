#pragma once

#include <string>

#include "lookup/request.h"

namespace quilp {

/// Says in one line why a lookup found nothing, and what the platform lacks for it. Empty when the
/// lookup found something.
std::string whyNothing(const libquilp::Answer& answer, const libquilp::Media& media);

}  // namespace quilp
