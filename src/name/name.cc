#include "name/name.h"

namespace libquilp {

Name readName(std::string_view nameOrPath, NameKind hint) {
  static_cast<void>(nameOrPath);
  Name name;
  name.kind = hint;
  return name;
}

}  // namespace libquilp
