#include "text/place.h"

namespace libquilp {

const char* placeOf(const char* path) { return path; }

}  // namespace libquilp
