#pragma once

#include <cstdio>
#include <initializer_list>

#include "plugin/files.h"
#include "plugin/registry.h"
#include "xml/xml_node.h"

namespace libquilp {

/// A number as an add-on's argument.
class Decimal {
 public:
  explicit Decimal(int value) { std::snprintf(text_, sizeof text_, "%d", value); }
  operator const char*() const { return text_; }  // NOLINT(google-explicit-constructor)

 private:
  char text_[80];
};

/// The scraper's own identifier behind the five characters that the catalogue puts in front; empty
/// when there is none.
const char* withoutPrefix(const char* id);

/// Whether execvp would find the shell, directly or along PATH.
bool canBeExecuted(const char* shell);

/// One call of an add-on: looks the shell up, runs it, opens the document it wrote. The document's
/// file goes with the object.
class ShellCall {
 public:
  using Lookup = char* (*)(const char* type, char* shell, int size);

  explicit ShellCall(const char* type, Lookup lookup = GetFirstEnabledShellByClass);

  bool found() const { return found_; }
  char* shell() { return shell_; }

  /// Runs the shell with the arguments and "-o" FILE behind them; returns its status. One that
  /// cannot be executed counts as one that wrote nothing: 0.
  int run(std::initializer_list<const char*> arguments);

  const char* file() const { return file_.name(); }

  /// The document's root element; empty when there is no document with it.
  XMLNode document(const char* root) const;

 private:
  char shell_[kShellSize + 1] = {};  // one byte more than the lookup fills
  bool found_;
  CTmpFile file_;
};

}  // namespace libquilp
