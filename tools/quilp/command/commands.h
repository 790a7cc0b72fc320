#pragma once

#include "usage/command.h"

// Each adds its commands to the program.

namespace quilp {

void addMovieCommands(Command& program);
void addTVCommands(Command& program);
void addKaraokeCommand(Command& program);
void addMusicCommands(Command& program);
void addKeywordCommand(Command& program);
void addNameCommand(Command& program);
void addScanCommand(Command& program);
void addExplainCommands(Command& program);
void addAddonCommands(Command& program);

// Parts of the "addon" command.
void addAddonCheck(Command& addon);
void addAddonList(Command& addon);

}  // namespace quilp
