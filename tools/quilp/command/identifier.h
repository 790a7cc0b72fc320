#pragma once

#include <string>

#include "lookup/request.h"
#include "usage/command.h"

namespace quilp {

/// The operand ID of a command that shows details.
class Identifier {
 public:
  void addTo(Command& command, const std::string& description);

  /// As the request takes it: an add-on's has five characters before it.
  std::string forRequest(const libquilp::Request& request) const;

 private:
  std::string id_;
  bool isCatalogues_ = false;
};

}  // namespace quilp
