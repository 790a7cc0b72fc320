#pragma once

#include "lookup/request.h"
#include "output/format.h"

namespace quilp {

/// Makes a lookup and prints its document, as it is or in another format; on standard error, why
/// there is nothing. Returns the program's exit status. Throws what the lookup throws, and
/// std::system_error when standard output cannot be written.
int printAnswer(const libquilp::Request& request, const libquilp::Values& values, Format format);

}  // namespace quilp
