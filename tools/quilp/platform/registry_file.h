#pragma once

#include <string>
#include <vector>

#include "platform/registry_text.h"
#include "platform/stock_add_ons.h"
#include "plugin/registry.h"

namespace quilp {

/// Changes the registry: into a new file, which replaces the old one when it is complete. One at a
/// time. All members throw std::runtime_error.
class RegistryFile {
 public:
  RegistryFile();
  ~RegistryFile();
  RegistryFile(const RegistryFile&) = delete;
  RegistryFile& operator=(const RegistryFile&) = delete;

  /// Makes the add-on the one that is asked for each of its types.
  void enable(const StockAddOn& addOn);

  /// Disables all sections of the add-on.
  void disable(const StockAddOn& addOn);

  /// Replaces the file, and keeps the old one as FILE.bak. Does nothing without a change.
  void save();

  /// As they would be read after save().
  const std::vector<libquilp::RegistrySection>& sections() const { return sections_; }

 private:
  void enable(const StockAddOn& addOn, const std::string& type);
  void write();

  std::string path_;  // without links
  int folder_ = -1;
  bool exists_ = false;
  std::string old_;
  RegistryText text_;
  std::string new_;  // path of the new file; empty after it took its place
  std::vector<libquilp::RegistrySection> sections_;
};

/// Whether a section names the program of an add-on.
bool isOf(const StockAddOn& addOn, const libquilp::RegistrySection& section);

}  // namespace quilp
