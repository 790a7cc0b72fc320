#pragma once

#include <string>

#include "lookup/request.h"
#include "usage/command.h"

namespace quilp {

/// The operand ID of a command that shows details.
class Identifier {
 public:
  void addTo(Command& command, const std::string& description);

  /// The identifier as the request takes it: with five characters before an add-on's.
  std::string forRequest(const libquilp::Request& request) const;

 private:
  std::string id_;
  bool isCatalogues_ = false;
};

}  // namespace quilp
