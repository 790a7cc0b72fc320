#include "command/identifier.h"

#include "command/options.h"

namespace quilp {

void Identifier::addTo(Command& command, const std::string& description) {
  command.operands.push_back({"ID", description + ", as a search printed it", toText(id_)});
  command.options.push_back({0, "catalogue-id", "",
                             "ID is a catalogue's: an add-on's has five characters before it",
                             [this](const std::string&) { isCatalogues_ = true; }});
}

std::string Identifier::forRequest(const libquilp::Request& request) const {
  libquilp::Observer quiet;
  const bool byAddOn = addOnFor(request, libquilp::Use::kPrint, {&quiet}).has_value();
  return byAddOn && !isCatalogues_ ? "quilp" + id_ : id_;
}

}  // namespace quilp
