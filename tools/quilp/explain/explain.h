#pragma once

#include "explain/explanation.h"
#include "lookup/request.h"

namespace quilp {

/// Makes a lookup, which a control may end, and records how it goes.
Explanation explain(const libquilp::Request& request, const libquilp::Values& values,
                    libquilp::Control* control);

}  // namespace quilp
