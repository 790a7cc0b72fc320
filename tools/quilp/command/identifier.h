#pragma once

#include <string>

#include "platform/registry_view.h"
#include "usage/command.h"

namespace quilp {

/// The operand ID of a command that shows details.
class Identifier {
 public:
  void addTo(Command& command, const std::string& description);

  /// As the library takes it: an add-on's has five characters before it.
  std::string forLibrary(const Media& media) const;

 private:
  std::string id_;
  bool isCatalogues_ = false;
};

}  // namespace quilp
