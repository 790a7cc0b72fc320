#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace libquilp {

/// The descriptor, or one above standard error in its place: a host that has closed its standard
/// streams would get a descriptor of ours for one of them. It is closed when a program starts.
inline int aboveStandard(int descriptor) {
  if (descriptor < 0 || descriptor > STDERR_FILENO) {
    return descriptor;
  }
  const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  close(descriptor);
  return moved;
}

}  // namespace libquilp
