#pragma once

#include "lookup/request.h"
#include "output/format.h"

namespace quilp {

/// Makes a lookup and prints its document, as it is or in another format. When nothing was found,
/// says why on standard error. Returns the program's exit status. Throws std::system_error when
/// standard output cannot be written.
int printAnswer(const libquilp::Request& request, const libquilp::Values& values, Format format);

}  // namespace quilp
