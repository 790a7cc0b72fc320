#pragma once

#include <functional>

#include "output/format.h"

namespace quilp {

/// Runs a print function of the library and passes its document on to standard output, as it is or
/// in another format. Returns the function's status if that is not 0, and otherwise whether the
/// document tells anything: the functions themselves give 0 also for none, and for one that has no
/// text.
int printDocument(const std::function<int()>& print, Format format);

}  // namespace quilp
