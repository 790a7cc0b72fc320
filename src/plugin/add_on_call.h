#pragma once

#include <string>
#include <vector>

#include "plugin/environment.h"
#include "plugin/files.h"
#include "plugin/observer.h"
#include "plugin/registry.h"

namespace libquilp {

/// The identifier without its first five characters; empty if it is shorter. An add-on's
/// identifiers carry such a prefix.
const char* withoutPrefix(const char* id);

/// One run of an add-on, and the document it wrote. The destructor removes the document.
class AddOnCall {
 public:
  /// Runs the add-on with the arguments, then "-o" FILE.
  AddOnCall(const AddOn& addOn, const std::vector<std::string>& arguments,
            const Variables& variables, const Context& context);

  const ProgramEnd& end() const { return end_; }
  const char* file() const { return file_.name(); }

 private:
  CTmpFile file_;
  ProgramEnd end_;
};

}  // namespace libquilp
