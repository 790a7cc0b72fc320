#pragma once

#include "plugin/control.h"
#include "usage/command.h"

namespace quilp {

/// "--timeout SECONDS" for a command that looks things up: the time for all its lookups.
void addTimeout(Command& command);

/// What ends the lookups of a command with --timeout: the limit, or Ctrl-C. Null without the
/// option: Ctrl-C ends the program then. Call it before each lookup.
libquilp::Control* beginLookup();

/// The exit status of a command: `otherwise`, but 130 after Ctrl-C.
int statusAfterLookup(int otherwise);

}  // namespace quilp
