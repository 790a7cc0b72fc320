#pragma once

#include "explain/explanation.h"
#include "lookup/request.h"

namespace quilp {

/// Makes a lookup and records how it goes.
Explanation explain(const libquilp::Request& request, const libquilp::Values& values);

}  // namespace quilp
