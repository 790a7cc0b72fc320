#pragma once

#include <functional>

namespace quilp {

/// Runs a print function of the library and passes its document on to standard output. Returns the
/// function's status if that is not 0, and otherwise whether there was a document: the functions
/// themselves give 0 for both.
int printDocument(const std::function<int()>& print);

}  // namespace quilp
