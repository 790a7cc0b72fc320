#pragma once

#include "plugin/reason.h"
#include "quilp.h"

namespace libquilp {

/// A reason as the plain interface has it, which has fewer.
quilp_reason plainReasonOf(Reason reason);

const char* wordOf(quilp_reason reason);

}  // namespace libquilp
