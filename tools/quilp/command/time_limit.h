#pragma once

#include "lookup/answer.h"
#include "plugin/control.h"
#include "usage/command.h"

namespace quilp {

inline constexpr int kMostSeconds = 86400;

/// "--timeout SECONDS" for a command that looks things up: the time for all its lookups.
void addTimeout(Command& command);

/// What ends the lookups of a command with --timeout: the limit, or Ctrl-C. Null without the
/// option: Ctrl-C then kills what a lookup started. Call it before each lookup.
libquilp::Control* beginLookup();

/// Call it after each lookup. After Ctrl-C, nothing that was started is left, and the answer says
/// so.
void endLookup(libquilp::Answer& answer);

/// The exit status of a command: `otherwise`, but 130 after Ctrl-C.
int statusAfterLookup(int otherwise);

}  // namespace quilp
