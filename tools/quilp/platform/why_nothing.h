#pragma once

#include <string>

#include "lookup/request.h"

namespace quilp {

/// Why a lookup gave nothing, and what the platform lacks for it, in one line; empty when it gave
/// something.
std::string whyNothing(const libquilp::Answer& answer, const libquilp::Media& media);

}  // namespace quilp
