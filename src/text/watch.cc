#include "text/watch.h"

namespace libquilp {

void markerSought(std::string_view /*marker*/, bool /*found*/) {}

}  // namespace libquilp
