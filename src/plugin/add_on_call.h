#pragma once

#include <string>
#include <vector>

#include "plugin/files.h"
#include "plugin/observer.h"
#include "plugin/registry.h"

namespace libquilp {

/// The identifier without the five characters that stand before an add-on's own; empty when it is
/// shorter.
const char* withoutPrefix(const char* id);

/// One run of an add-on, and the document that it wrote. The destructor removes the document.
class AddOnCall {
 public:
  /// Runs the add-on with the arguments and "-o" FILE after them.
  AddOnCall(const AddOn& addOn, const std::vector<std::string>& arguments, const Context& context);

  const ProgramEnd& end() const { return end_; }
  const char* file() const { return file_.name(); }

 private:
  CTmpFile file_;
  ProgramEnd end_;
};

}  // namespace libquilp
