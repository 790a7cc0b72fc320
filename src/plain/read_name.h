#pragma once

#include "name/module.h"
#include "plain/result.h"

namespace libquilp {

/// What a name tells, as the only result. Throws nothing but std::bad_alloc.
PlainAnswer nameAnswer(const char* name, NamedKind kind);

}  // namespace libquilp
