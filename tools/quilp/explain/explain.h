#pragma once

#include "explain/explanation.h"
#include "lookup/request.h"

namespace quilp {

/// Makes the lookup that the program's command of that kind makes, and watches it.
Explanation explain(const libquilp::Request& request, const libquilp::Values& values);

}  // namespace quilp
