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
void addCatalogueCommands(Command& program);
void addAddonCommands(Command& program);
void addDoctorCommand(Command& program);

// Parts of the "addon" command.
void addAddonCheck(Command& addon);
void addAddonList(Command& addon);
void addAddonEnable(Command& addon);
void addAddonDisable(Command& addon);
void addAddonTest(Command& addon);

// Parts of the "catalogue" command.
void addCatalogueFetch(Command& catalogue);
void addCatalogueImport(Command& catalogue);
void addCatalogueInfo(Command& catalogue);
void addCatalogueSearch(Command& catalogue);
void addCatalogueShow(Command& catalogue);

}  // namespace quilp
