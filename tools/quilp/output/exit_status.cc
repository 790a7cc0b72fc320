#include "output/exit_status.h"

#include "lookup/request.h"
#include "output/document.h"

namespace quilp {

int exitStatusOf(const libquilp::PrintedAnswer& answer) {
  if (answer.document) {
    return holdsText(*answer.document) ? 0 : kNothingFound;
  }
  return answer.status > 0 ? answer.status : kNothingFound;
}

}  // namespace quilp
