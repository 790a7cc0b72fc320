#pragma once

#include <string>
#include <vector>

namespace quilp {

/// An add-on that belongs to this system.
struct StockAddOn {
  const char* name;         // also of its program, and of its section of the settings
  const char* types;        // that it serves, as the registry spells them: "Movie TV"
  const char* does;         // in a few words
  const char* asks;         // the host that it sends requests to; empty for none
  const char* key;          // the setting that it does not work without; empty for none
  const char* attribution;  // the line that its source wants to be shown; empty for none

  std::vector<std::string> typeList() const;
  /// Where its program is installed.
  std::string program() const;
  bool isInstalled() const;
};

const std::vector<StockAddOn>& stockAddOns();

/// Null for a name that is none of theirs.
const StockAddOn* stockAddOn(const std::string& name);

}  // namespace quilp
